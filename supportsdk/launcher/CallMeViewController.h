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
        /// The number is typed on a keyboard of numbers and punctuation.
        virtual void focusPhoneNumber() {}
    };

    /// `support` may not be null.
    static std::shared_ptr<CallMeViewController> create(std::shared_ptr<Support> support,
                                                        std::weak_ptr<SupportButton> button);

    [[nodiscard]] std::string_view className() const override { return "CallMeViewController"; }
    void viewDidLoad() override;

    /// The person changed the number: any text is taken, and only a valid one can be submitted.
    void phoneNumberDidChange(const std::string& text);
    /// Asks for the call with `callbackNumber` and `desc`. The issue becomes the current one.
    void createIssue();
    /// Shows the words of the settings, long enough to be read.
    static void showConfirmation(const Support& support);

    /// Whether it is a number of the North American plan: ten digits, the area code in brackets or
    /// not, after 1 or +1 or neither, with a hyphen, point or blank between the groups or nothing.
    [[nodiscard]] static bool validatePhone(const std::optional<std::string>& text);

    std::weak_ptr<View> view;
    /// The number to begin with, set by the opener before the screen loads; then the one submitted.
    std::optional<std::string> callbackNumber;
    std::string callMeLabel;
    std::string phoneNumberLabel;
    /// What stands in the field at this moment.
    std::string phoneNumberText;

 protected:
    void okButtonDidChange(bool enabled) override;
    void submit() override;

 private:
    using DialogViewController::DialogViewController;
};

}  // namespace supportsdk
