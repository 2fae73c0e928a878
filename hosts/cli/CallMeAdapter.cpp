#include "hosts/cli/CallMeAdapter.h"

namespace supportsdk::host {

Json CallMeAdapter::ownFields() const {
    return Json::array(
        {{{"label", dialog_->phoneNumberLabel}, {"value", dialog_->phoneNumberText}}});
}

bool CallMeAdapter::type(const std::string& text, const std::optional<std::string>& field) {
    if (field && *field != dialog_->phoneNumberLabel) return DialogAdapter::type(text, field);
    dialog_->phoneNumberDidChange(text);
    return true;
}

}  // namespace supportsdk::host
