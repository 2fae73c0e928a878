#pragma once

#include <memory>
#include <string>

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
    virtual void okButtonClicked() = 0;

    // The description shows its placeholder while it is empty and not being edited.
    void descriptionDidBeginEditing() { hidePlaceholder(); }
    void descriptionDidEndEditing() { showPlaceholder(); }
    void showPlaceholder();
    void hidePlaceholder();
    [[nodiscard]] bool isPlaceholder() const { return descriptionText == placeholder; }
    /// What the person wrote; "" for nothing.
    [[nodiscard]] std::string getDescription() const;

    const std::shared_ptr<Support> support;
    const std::weak_ptr<SupportButton> supportButton;

    // Labels, translated.
    std::string descriptionLabel;
    std::string cancelButton;
    std::string okButton;
    std::string placeholder;
    /// What stands in the field at this moment, the placeholder included.
    std::string descriptionText;

 protected:
    DialogViewController(std::shared_ptr<Support> support, std::weak_ptr<SupportButton> button);

    void dismiss();
    [[nodiscard]] std::string localized(const char* english) const;

 private:
    void present(ScreenController* over);
};

}  // namespace supportsdk
