#pragma once

#include "supportsdk/forms/QDFieldViewModel.h"

namespace supportsdk {

class Appearance;

/// The rows of a form that goes to the service, with the theme's look. Null colours and styles are
/// the toolkit's own; sizes are in points. Main thread only.
class SUPPORTSDK_API FormFieldViewModel : public QDFieldViewModel {
 public:
    static std::shared_ptr<FormFieldViewModel> create(std::shared_ptr<QDFormModel> form);
    explicit FormFieldViewModel(std::shared_ptr<QDFormModel> form);

    /// Takes the colours, texts and sizes of forms, and the background.
    void configureWithAppearance(const Appearance& appearance);

    std::optional<Color> labelColor;
    std::optional<Color> backgroundColor;
    std::optional<Color> fieldBackgroundColor;
    std::optional<Color> linkAndButtonTintColor;

    std::string formSaveButtonText;
    std::string formCancelButtonText;
    double formSpacing = 0.0;
    std::optional<Color> formEntryBorderColor;
    double formEntryBorderWidth = 0.0;
    std::optional<Color> formEntryTextColor;
    double formEntryTextSize = 0.0;
    std::optional<std::string> formEntryTextStyle;
    std::optional<Color> formLabelRequiredIndicatorColor;
    std::optional<Color> formLabelRequiredTextColor;
    std::optional<Color> formLabelTextColor;
    double formLabelTextSize = 0.0;
    std::optional<std::string> formLabelTextStyle;
};

}  // namespace supportsdk
