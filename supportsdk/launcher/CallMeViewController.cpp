#include "supportsdk/launcher/CallMeViewController.h"

#include <chrono>
#include <utility>

namespace supportsdk {

namespace {

/// Takes a telephone number apart from its front.
class NumberReader {
 public:
    explicit NumberReader(std::string_view text) : rest_(text) {}

    bool take(char wanted) { return takeOneOf(std::string_view(&wanted, 1)); }
    bool takeOneOf(std::string_view wanted) {
        if (rest_.empty() || wanted.find(rest_.front()) == std::string_view::npos) return false;
        rest_.remove_prefix(1);
        return true;
    }
    bool takeDigits(int count) {
        while (count > 0 && takeOneOf("0123456789")) --count;
        return count == 0;
    }
    [[nodiscard]] bool isAtEnd() const { return rest_.empty(); }

 private:
    std::string_view rest_;
};

constexpr std::string_view separators = "-. ";

bool takeAreaCode(NumberReader& number) {
    number.take('(');
    if (!number.takeOneOf("23456789") || !number.takeOneOf("012345678")) return false;
    if (!number.takeDigits(1)) return false;
    number.take(')');
    number.takeOneOf(separators);
    return true;
}

bool takeExchange(NumberReader& number) {
    if (!number.takeOneOf("23456789") || !number.takeDigits(2)) return false;
    number.takeOneOf(separators);
    return true;
}

}  // namespace

std::shared_ptr<CallMeViewController> CallMeViewController::create(
    std::shared_ptr<Support> support, std::weak_ptr<SupportButton> button) {
    return std::shared_ptr<CallMeViewController>(
        new CallMeViewController(std::move(support), std::move(button)));
}

void CallMeViewController::viewDidLoad() {
    callMeLabel = support->features.callMeButtonText.value_or("");
    phoneNumberLabel = localized("Phone Number");
    phoneNumberText = callbackNumber.value_or("");
    descriptionLabel = localized("Description");
    showTexts("Please describe what you are experiencing (optional)");
    enableOkButton(validatePhone(callbackNumber));
    if (const auto picture = view.lock()) picture->focusPhoneNumber();
}

void CallMeViewController::phoneNumberDidChange(const std::string& text) {
    phoneNumberText = text;
    enableOkButton(validatePhone(text));
}

void CallMeViewController::okButtonDidChange(bool enabled) {
    if (const auto picture = view.lock()) picture->okButtonDidChange(enabled);
}

void CallMeViewController::submit() {
    callbackNumber = phoneNumberText;
    createIssue();
}

void CallMeViewController::createIssue() {
    support->platform->progress->showStatus(localized("Requesting callback"));
    support->createIssueWithCallbackNumber(
        callbackNumber, desc,
        whenIssueArrives([](Support& target, const std::shared_ptr<QDIssue>& issue) {
            target.saveCurrentIssue(issue);
            showConfirmation(target);
        }),
        whenRequestFails("Unable to create issue"));
}

void CallMeViewController::showConfirmation(const Support& support) {
    constexpr std::chrono::milliseconds duration{3000};
    support.platform->progress->showInfo(support.features.callMeButtonConfirmation.value_or(""));
    support.platform->progress->dismissAfter(duration);
}

bool CallMeViewController::validatePhone(const std::optional<std::string>& text) {
    if (!text) return false;
    NumberReader number(*text);
    const bool isInternational = number.take('+');
    if (number.take('1')) {
        number.takeOneOf(separators);
    } else if (isInternational) {
        return false;
    }
    return takeAreaCode(number) && takeExchange(number) && number.takeDigits(4) && number.isAtEnd();
}

}  // namespace supportsdk
