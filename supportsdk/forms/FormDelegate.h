#pragma once

#include "supportsdk/platform/Export.h"

namespace supportsdk {

/// What a form's rows tell its screen. Main thread; an operation that is not overridden is silence.
class SUPPORTSDK_API FormDelegate {
 public:
    virtual ~FormDelegate() = default;

    /// A value changed; the visible fields are determined anew.
    virtual void formDidChangeSelection() {}
};

}  // namespace supportsdk
