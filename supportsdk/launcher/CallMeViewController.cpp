#include "supportsdk/launcher/CallMeViewController.h"

#include <chrono>
#include <utility>

#include "supportsdk/core/Error.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/QDIssue.h"
#include "supportsdk/launcher/SupportButton.h"
#include "supportsdk/launcher/SupportButtonDelegate.h"

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

/// What a former configuration or a button that is gone has asked for is no business of anybody.
bool isPresent(const std::shared_ptr<SupportButton>& button,
               const std::shared_ptr<Support>& support) {
    return button && support && button->support == support;
}

void showConfirmation(const Support& support) {
    // Long enough to be read.
    constexpr std::chrono::milliseconds duration{3000};
    support.platform->progress->showInfo(support.features.callMeButtonConfirmation.value_or(""));
    support.platform->progress->dismissAfter(duration);
}

void tellFailure(SupportButton& button, const Localizer& localizer, const Json& response) {
    SupportError error;
    error.localizedDescription = localizer.localized("Unable to create issue");
    if (const auto message = stringForKey(response, "message")) {
        error.localizedFailureReason = localizer.localized(*message);
    }
    if (const auto told = button.delegate.lock())
        told->supportButtonDidFailWithError(button, error);
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
    placeholder = localized("Please describe what you are experiencing (optional)");
    showPlaceholder();
    cancelButton = localized("Cancel");
    okButton = localized("Submit");
    enableOkButton(validatePhone(callbackNumber));
    if (const auto picture = view.lock()) picture->focusPhoneNumber();
}

void CallMeViewController::phoneNumberDidChange(const std::string& text) {
    phoneNumberText = text;
    enableOkButton(validatePhone(text));
}

void CallMeViewController::enableOkButton(bool enable) {
    isOkButtonEnabled_ = enable;
    if (const auto picture = view.lock()) picture->okButtonDidChange(enable);
}

void CallMeViewController::okButtonClicked() {
    if (!isOkButtonEnabled_) return;
    const auto self = shared_from_this();
    // A second tap on the way out must not call twice.
    enableOkButton(false);
    dismiss();
    callbackNumber = phoneNumberText;
    desc = getDescription();
    createIssue();
}

/// Nothing of it needs the dialog, which is gone by the time of the answer.
void CallMeViewController::createIssue() {
    const auto progress = support->platform->progress;
    progress->showStatus(localized("Requesting callback"));
    support->createIssueWithCallbackNumber(
        callbackNumber, desc,
        [weak = std::weak_ptr(support), button = supportButton, progress](const Json& response) {
            progress->dismiss();
            const auto target = weak.lock();
            const auto owner = button.lock();
            const auto issue = firstIssue(response);
            if (!issue || !isPresent(owner, target)) return;
            target->saveCurrentIssue(issue);
            showConfirmation(*target);
        },
        [weak = std::weak_ptr(support), button = supportButton, progress,
         localizer = support->platform->localizer](const Json& response) {
            progress->dismiss();
            const auto owner = button.lock();
            if (isPresent(owner, weak.lock())) tellFailure(*owner, *localizer, response);
        });
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
