#pragma once

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// What Support tells its owner. Main thread; an operation that is not overridden is silence.
class SUPPORTSDK_API SupportDelegate {
 public:
    virtual ~SupportDelegate() = default;

    /// Settings are in and processed. `response` is what the service answered.
    virtual void supportDidRetrieveSettings(const Json& response) { (void)response; }
    /// The settings request failed, and no configuration was on trial. `response` holds "status"
    /// and "message".
    virtual void supportDidFailToRetrieveSettings(const Json& response) { (void)response; }
};

}  // namespace supportsdk
