#pragma once

#include "supportsdk/core/BaseWebViewController.h"

namespace supportsdk {

/// An article of the knowledge base that has an address, in the browser of the application.
class SUPPORTSDK_API KBViewController : public BaseWebViewController {
 public:
    using BaseWebViewController::BaseWebViewController;

    [[nodiscard]] std::string_view className() const override { return "KBViewController"; }
};

}  // namespace supportsdk
