#pragma once

#include <memory>
#include <string>

#include "supportsdk/platform/Platform.h"

namespace supportsdk {

/// A screen that shows one web page.
class SUPPORTSDK_API BaseWebViewController : public ScreenController {
 public:
    BaseWebViewController(const Platform& platform, const std::string& screenTitle,
                          const std::string& backLabel, std::string url);

    [[nodiscard]] std::string_view className() const override { return "BaseWebViewController"; }
    void viewDidLoad() override;

    /// The page's address, as it came from the service: unchecked.
    const std::string initialUrl;

 private:
    // Weak, because whoever presents screens keeps them.
    const std::weak_ptr<Presenter> presenter_;
    const std::string backLabel_;
};

}  // namespace supportsdk
