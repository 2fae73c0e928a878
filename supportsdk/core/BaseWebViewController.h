#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "supportsdk/platform/Platform.h"

namespace supportsdk {

/// A screen that shows one web page, or a piece of HTML. Main thread only.
class SUPPORTSDK_API BaseWebViewController : public ScreenController {
 public:
    /// Both texts show as they are: whoever has them translates them.
    BaseWebViewController(const Platform& platform, std::string screenTitle, std::string backLabel,
                          std::string url);

    [[nodiscard]] std::string_view className() const override { return "BaseWebViewController"; }
    void viewDidLoad() override;

    /// The person is done with it: takes the screen away.
    virtual void finish();

    /// The page's address, as it came from the service: unchecked. "" when `html` shows.
    const std::string initialUrl;
    /// As it came from the service: whoever shows it lets it run no scripts.
    std::optional<std::string> html;
    /// It lies in a stack of its opener, and leaves it alone.
    bool isPushed = false;
    /// Tells how far the page is loaded.
    bool showsProgress = true;
    /// Of the bar, and of what stands in it; null is the toolkit's own.
    std::optional<Color> barColor, barTintColor;

 protected:
    // Weak, because whoever presents screens keeps them.
    const std::weak_ptr<Presenter> presenter;

 private:
    const std::string backLabel_;
};

}  // namespace supportsdk
