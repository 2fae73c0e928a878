#pragma once

#include <functional>
#include <memory>
#include <string>

#include "supportsdk/core/QDIssue.h"
#include "supportsdk/core/Support.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Screens.h"

namespace supportsdk {

class SupportButton;

/// A small screen over another one, with a text that may be left empty, "Cancel" and a button that
/// submits. Made for one use; gone before its request goes out. Main thread only.
class SUPPORTSDK_API DialogViewController : public ScreenController {
 public:
    /// Presents the dialog, in a stack of its own, over the screen on top of the application.
    void showFromView();
    void showFromViewController(ScreenController& controller);
    [[nodiscard]] std::shared_ptr<ScreenController> findTopController() const;

    /// Leaves, and sends nothing.
    void cancelButtonClicked();
    /// Leaves, and submits, once. Nothing happens while the button is disabled.
    void okButtonClicked();
    void enableOkButton(bool enable);
    [[nodiscard]] bool isOkButtonEnabled() const { return isOkButtonEnabled_; }

    // The description shows its placeholder while it is empty and not being edited.
    void descriptionDidBeginEditing() { hidePlaceholder(); }
    void descriptionDidEndEditing() { showPlaceholder(); }
    /// The keyboard's own "Done": ends the editing.
    void done() { descriptionDidEndEditing(); }
    void showPlaceholder();
    void hidePlaceholder();
    [[nodiscard]] bool isPlaceholder() const { return descriptionText == placeholder; }
    /// What the person wrote; "" for nothing.
    [[nodiscard]] std::string getDescription() const;
    /// Light grey for the placeholder, the theme's labels' for what the person writes.
    [[nodiscard]] Color descriptionTextColor() const;

    const std::shared_ptr<Support> support;
    const std::weak_ptr<SupportButton> supportButton;

    // Labels, translated.
    std::string descriptionLabel;
    std::string cancelButton;
    std::string okButton;
    std::string placeholder;
    /// What stands in the field at this moment, the placeholder included.
    std::string descriptionText;
    /// The description as submitted.
    std::string desc;

 protected:
    DialogViewController(std::shared_ptr<Support> support, std::weak_ptr<SupportButton> button);

    /// Gives the buttons and the description their texts.
    void showTexts(const char* descriptionPlaceholder);
    virtual void okButtonDidChange(bool enabled) { (void)enabled; }
    /// Sends what was entered; the dialog has left.
    virtual void submit() = 0;

    // What becomes of the request. The dialog is gone by then, so nothing holds on to it or to
    // Support. The progress text goes in any case; nothing else happens once the button is gone or
    // has another configuration.

    using IssueHandler = std::function<void(Support&, const std::shared_ptr<QDIssue>&)>;
    /// Hands over the first issue of the answer; does nothing with an answer that has none.
    [[nodiscard]] RestCallback whenIssueArrives(IssueHandler handler) const;
    /// Tells the host.
    [[nodiscard]] RestCallback whenRequestFails(const char* description) const;

    [[nodiscard]] std::string localized(const char* english) const;

 private:
    void present(ScreenController* over);
    void dismiss();

    bool isOkButtonEnabled_ = false;
    bool isSubmitted_ = false;
};

}  // namespace supportsdk
