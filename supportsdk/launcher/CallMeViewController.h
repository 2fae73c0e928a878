#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "supportsdk/launcher/DialogViewController.h"

namespace supportsdk {

/// Asks for a telephone number and a description, and has the person called back. Main thread only.
class SUPPORTSDK_API CallMeViewController : public DialogViewController {
 public:
    /// What the screen asks of its picture.
    class View {
     public:
        virtual ~View() = default;
        virtual void okButtonDidChange(bool enabled) = 0;
        virtual void focusPhoneNumber() {}
    };

    /// `support` may not be null.
    static std::shared_ptr<CallMeViewController> create(std::shared_ptr<Support> support,
                                                        std::weak_ptr<SupportButton> button);

    [[nodiscard]] std::string_view className() const override { return "CallMeViewController"; }
    void viewDidLoad() override;

    /// The person changed the number: any text is taken, and only a valid one can be submitted.
    void phoneNumberDidChange(const std::string& text);
    void enableOkButton(bool enable);
    [[nodiscard]] bool isOkButtonEnabled() const { return isOkButtonEnabled_; }
    /// Leaves, and creates the issue. Nothing happens while the button is disabled.
    void okButtonClicked() override;

    /// Whether it is a number of the North American plan: ten digits, the area code in brackets or
    /// not, after 1 or +1 or neither, with a hyphen, point or blank between the groups or nothing.
    [[nodiscard]] static bool validatePhone(const std::optional<std::string>& text);

    std::weak_ptr<View> view;
    /// The number to begin with, set by the opener before the screen loads; then the one submitted.
    std::optional<std::string> callbackNumber;
    /// The description as submitted.
    std::string desc;

    std::string callMeLabel;
    std::string phoneNumberLabel;
    /// What stands in the field at this moment.
    std::string phoneNumberText;

 private:
    using DialogViewController::DialogViewController;

    void createIssue();

    bool isOkButtonEnabled_ = false;
};

}  // namespace supportsdk
