#include "hosts/cli/DialogAdapter.h"

namespace supportsdk::host {

Json DialogAdapter::state() const {
    auto fields = ownFields();
    fields.push_back({{"label", dialog_->descriptionLabel},
                      {"placeholder", dialog_->placeholder},
                      {"value", dialog_->getDescription()}});
    return {{"heading", heading()},
            {"fields", std::move(fields)},
            {"buttons",
             {{{"label", dialog_->cancelButton}, {"enabled", true}},
              {{"label", dialog_->okButton}, {"enabled", dialog_->isOkButtonEnabled()}}}}};
}

bool DialogAdapter::type(const std::string& text, const std::optional<std::string>& field) {
    if (field && *field != dialog_->descriptionLabel && *field != dialog_->placeholder)
        return false;
    dialog_->descriptionDidBeginEditing();
    dialog_->descriptionText = text;
    dialog_->descriptionDidEndEditing();
    reload();
    return true;
}

bool DialogAdapter::pressControl(const std::string& label) {
    if (label == dialog_->cancelButton) {
        dialog_->cancelButtonClicked();
        return true;
    }
    if (label != dialog_->okButton || !dialog_->isOkButtonEnabled()) return false;
    dialog_->okButtonClicked();
    return true;
}

}  // namespace supportsdk::host
