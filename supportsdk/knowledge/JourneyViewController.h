#pragma once

#include "supportsdk/core/BaseWebViewController.h"

namespace supportsdk {

/// The page of a journey, in the browser of the application.
class SUPPORTSDK_API JourneyViewController : public BaseWebViewController {
 public:
    using BaseWebViewController::BaseWebViewController;

    [[nodiscard]] std::string_view className() const override { return "JourneyViewController"; }
    /// Dismisses it when it was presented, else pops it.
    void finish() override;
};

}  // namespace supportsdk
