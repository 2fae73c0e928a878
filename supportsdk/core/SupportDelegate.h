#pragma once

#include <memory>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

class KBViewModel;
class QDFormModel;

/// What Support tells its owner. Main thread; an operation that is not overridden is silence.
class SUPPORTSDK_API SupportDelegate {
 public:
    virtual ~SupportDelegate() = default;

    /// Settings are in and processed. `response` is what the service answered.
    virtual void supportDidRetrieveSettings(const Json& response) { (void)response; }
    /// The settings request failed, and no configuration was on trial. `response` holds "status"
    /// and "message".
    virtual void supportDidFailToRetrieveSettings(const Json& response) { (void)response; }

    /// The knowledge base's tree is in; null when there is none to show.
    virtual void supportUpdateKBWithModel(const std::shared_ptr<KBViewModel>& model) {
        (void)model;
    }
    virtual void supportSearchKBWithModel(const std::shared_ptr<KBViewModel>& model) {
        (void)model;
    }
    /// The search failed or found nothing.
    virtual void supportSearchKBFailed() {}

    virtual void supportUpdateFormWithModel(const std::shared_ptr<QDFormModel>& model) {
        (void)model;
    }
    /// A batch of forms is in; those that could not be fetched are missing.
    virtual void supportUpdateForms() {}
};

}  // namespace supportsdk
