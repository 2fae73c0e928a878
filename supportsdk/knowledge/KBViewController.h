#pragma once

#include "supportsdk/core/BaseWebViewController.h"

namespace supportsdk {

class Appearance;

/// An article of the knowledge base that has an address, in the browser of the application. Main
/// thread only.
class SUPPORTSDK_API KBViewController : public BaseWebViewController {
 public:
    /// What the screen asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        virtual void visibilityDidChange(bool isVisible) = 0;
    };

    /// `appearance` may not be null.
    KBViewController(const Platform& platform, std::shared_ptr<const Appearance> appearance,
                     std::string screenTitle, std::string url);

    [[nodiscard]] std::string_view className() const override { return "KBViewController"; }
    /// Takes its tint from the theme of the moment. The browser has a bar of its own.
    void viewWillAppear() override;

    /// Takes the page out of sight without leaving it, and back.
    void hide() { setVisible(false); }
    void show() { setVisible(true); }
    [[nodiscard]] bool isVisible() const { return isVisible_; }

    std::weak_ptr<View> view;

 private:
    void setVisible(bool visible);

    const std::shared_ptr<const Appearance> appearance_;
    bool isVisible_ = true;
};

}  // namespace supportsdk
