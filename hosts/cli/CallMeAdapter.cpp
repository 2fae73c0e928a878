#include "hosts/cli/CallMeAdapter.h"

namespace supportsdk::host {

Json CallMeAdapter::state() const {
    Json description = {{"label", dialog_->descriptionLabel},
                        {"placeholder", dialog_->placeholder},
                        {"value", dialog_->getDescription()}};
    return {{"heading", dialog_->callMeLabel},
            {"fields",
             {{{"label", dialog_->phoneNumberLabel}, {"value", dialog_->phoneNumberText}},
              std::move(description)}},
            {"buttons",
             {{{"label", dialog_->cancelButton}, {"enabled", true}},
              {{"label", dialog_->okButton}, {"enabled", dialog_->isOkButtonEnabled()}}}}};
}

bool CallMeAdapter::type(const std::string& text, const std::optional<std::string>& field) {
    if (!field || *field == dialog_->phoneNumberLabel) {
        dialog_->phoneNumberDidChange(text);
        return true;
    }
    if (*field != dialog_->descriptionLabel) return false;
    dialog_->descriptionDidBeginEditing();
    dialog_->descriptionText = text;
    dialog_->descriptionDidEndEditing();
    return true;
}

bool CallMeAdapter::pressControl(const std::string& label) {
    if (label == dialog_->cancelButton) {
        dialog_->cancelButtonClicked();
        return true;
    }
    if (label != dialog_->okButton || !dialog_->isOkButtonEnabled()) return false;
    dialog_->okButtonClicked();
    return true;
}

}  // namespace supportsdk::host
