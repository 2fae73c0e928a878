#include "hosts/cli/ScreenAdapter.h"

namespace supportsdk::host {

namespace {

Json labelsOf(const std::vector<BarButton>& buttons) {
    Json labels = Json::array();
    for (const auto& button : buttons) labels.push_back(button.label);
    return labels;
}

bool pressIn(const std::vector<BarButton>& buttons, const std::string& label) {
    for (const auto& button : buttons) {
        if (button.label != label || !button.action) continue;
        // The screen may change its bars while the action runs.
        const auto action = button.action;
        action();
        return true;
    }
    return false;
}

}  // namespace

Json ScreenAdapter::describe() const {
    Json fields = state();
    fields["class"] = screen_->className();
    if (!screen_->title.empty()) fields["title"] = screen_->title;
    if (screen_->isNavigationBarHidden) fields["barHidden"] = true;
    if (!screen_->leftBarButtons.empty()) fields["left"] = labelsOf(screen_->leftBarButtons);
    if (!screen_->rightBarButtons.empty()) fields["right"] = labelsOf(screen_->rightBarButtons);
    return fields;
}

bool ScreenAdapter::press(const std::string& label) {
    return pressIn(screen_->leftBarButtons, label) || pressIn(screen_->rightBarButtons, label) ||
           pressControl(label);
}

}  // namespace supportsdk::host
