#include "supportsdk/forms/FormFieldViewModel.h"

#include <utility>

#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

std::shared_ptr<FormFieldViewModel> FormFieldViewModel::create(std::shared_ptr<QDFormModel> form) {
    return std::make_shared<FormFieldViewModel>(std::move(form));
}

FormFieldViewModel::FormFieldViewModel(std::shared_ptr<QDFormModel> form)
    : QDFieldViewModel(std::move(form)) {
    updateInline = true;
    isSideBySideLayout = true;
}

void FormFieldViewModel::configureWithAppearance(const Appearance& appearance) {
    backgroundColor = appearance.systemBackgroundColor;
    formSaveButtonText = appearance.formSaveButtonText();
    formCancelButtonText = appearance.formCancelButtonText();
    formSpacing = appearance.formSpacing();
    formEntryBorderColor = appearance.formEntryBorderColor();
    formEntryBorderWidth = appearance.formEntryBorderWidth();
    formEntryTextColor = appearance.formEntryTextColor();
    formEntryTextSize = appearance.formEntryTextSize();
    formEntryTextStyle = appearance.formEntryTextStyle();
    formLabelRequiredIndicatorColor = appearance.formLabelRequiredIndicatorColor();
    formLabelRequiredTextColor = appearance.formLabelRequiredTextColor();
    formLabelTextColor = appearance.formLabelTextColor();
    formLabelTextSize = appearance.formLabelTextSize();
    formLabelTextStyle = appearance.formLabelTextStyle();
}

}  // namespace supportsdk
