#include "supportsdk/launcher/DialogViewController.h"

#include <utility>

namespace supportsdk {

DialogViewController::DialogViewController(std::shared_ptr<Support> owner,
                                           std::weak_ptr<SupportButton> button)
    : support(std::move(owner)), supportButton(std::move(button)) {}

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

void DialogViewController::showPlaceholder() {
    if (descriptionText.empty()) descriptionText = placeholder;
}

void DialogViewController::hidePlaceholder() {
    if (isPlaceholder()) descriptionText.clear();
}

std::string DialogViewController::getDescription() const {
    return isPlaceholder() ? "" : descriptionText;
}

void DialogViewController::dismiss() {
    const auto self = shared_from_this();
    support->platform->presenter->dismiss(*this);
}

std::string DialogViewController::localized(const char* english) const {
    return support->platform->localizer->localized(english);
}

}  // namespace supportsdk
