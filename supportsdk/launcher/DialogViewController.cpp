#include "supportsdk/launcher/DialogViewController.h"

#include <utility>

#include "supportsdk/core/Error.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/launcher/SupportButton.h"
#include "supportsdk/launcher/SupportButtonDelegate.h"
#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

namespace {

constexpr std::uint32_t lightGrey = 0xAAAAAA;

/// What a former configuration or a button that is gone has asked for is no business of anybody.
bool isPresent(const std::shared_ptr<SupportButton>& button,
               const std::shared_ptr<Support>& support) {
    return button && support && button->support == support;
}

}  // namespace

DialogViewController::DialogViewController(std::shared_ptr<Support> owner,
                                           std::weak_ptr<SupportButton> button)
    : support(std::move(owner)), supportButton(std::move(button)) {
    isNavigationBarHidden = true;
}

void DialogViewController::showFromView() {
    present(findTopController().get());
}

void DialogViewController::showFromViewController(ScreenController& controller) {
    present(&controller);
}

void DialogViewController::present(ScreenController* over) {
    const auto navigation = std::make_shared<NavigationController>();
    navigation->children.push_back(shared_from_this());
    support->platform->presenter->present(navigation, over);
}

std::shared_ptr<ScreenController> DialogViewController::findTopController() const {
    return Support::topViewController(*support->platform);
}

void DialogViewController::cancelButtonClicked() {
    dismiss();
}

void DialogViewController::okButtonClicked() {
    if (!isOkButtonEnabled_) return;
    const auto self = shared_from_this();
    // A second tap on the way out must not send twice.
    enableOkButton(false);
    isSubmitted_ = true;
    dismiss();
    desc = getDescription();
    submit();
}

void DialogViewController::enableOkButton(bool enable) {
    isOkButtonEnabled_ = enable && !isSubmitted_;
    okButtonDidChange(isOkButtonEnabled_);
}

void DialogViewController::showTexts(const char* descriptionPlaceholder) {
    placeholder = localized(descriptionPlaceholder);
    showPlaceholder();
    cancelButton = localized("Cancel");
    okButton = localized("Submit");
}

void DialogViewController::showPlaceholder() {
    if (descriptionText.empty()) descriptionText = placeholder;
}

void DialogViewController::hidePlaceholder() {
    if (isPlaceholder()) descriptionText.clear();
}

std::string DialogViewController::getDescription() const {
    return isPlaceholder() ? "" : descriptionText;
}

Color DialogViewController::descriptionTextColor() const {
    return isPlaceholder() ? colorFromRGB(lightGrey) : support->appearance->labelColor;
}

RestCallback DialogViewController::whenIssueArrives(IssueHandler handler) const {
    return [weak = std::weak_ptr(support), button = supportButton,
            progress = support->platform->progress,
            handler = std::move(handler)](const Json& response) {
        progress->dismiss();
        const auto target = weak.lock();
        const auto issue = firstIssue(response);
        if (issue && isPresent(button.lock(), target)) handler(*target, issue);
    };
}

RestCallback DialogViewController::whenRequestFails(const char* description) const {
    return [weak = std::weak_ptr(support), button = supportButton,
            progress = support->platform->progress, localizer = support->platform->localizer,
            description](const Json& response) {
        progress->dismiss();
        const auto owner = button.lock();
        if (!isPresent(owner, weak.lock())) return;
        SupportError error;
        error.localizedDescription = localizer->localized(description);
        if (const auto message = stringForKey(response, "message")) {
            error.localizedFailureReason = localizer->localized(*message);
        }
        if (const auto told = owner->delegate.lock())
            told->supportButtonDidFailWithError(*owner, error);
    };
}

void DialogViewController::dismiss() {
    const auto self = shared_from_this();
    support->platform->presenter->dismiss(*this);
}

std::string DialogViewController::localized(const char* english) const {
    return support->platform->localizer->localized(english);
}

}  // namespace supportsdk
