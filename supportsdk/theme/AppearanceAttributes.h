#pragma once

#include <optional>
#include <string>

#include "supportsdk/core/Settings.h"
#include "supportsdk/platform/Images.h"
#include "supportsdk/theme/Colors.h"

namespace supportsdk {

/// The part of the theme that is plain values. Fonts are named as the host's toolkit names them,
/// sizes are in points.
struct AppearanceAttributes {
    bool isConfigured = false;
    bool transparentMode = false;

    // The system's colours, read again each time a theme is applied or the system's look changes.
    Color labelColor = colorFromRGB(0x000000);
    Color systemBackgroundColor = colorFromRGB(0xFFFFFF);
    Color secondarySystemBackgroundColor = colorFromRGB(0xAAAAAA);

    // Set once, by the first configuration.
    Color badgeBackgroundColor = colorFromRGB(0xFF0000);
    Color homeBackgroundColor = colorFromRGB(0x1F3350);
    Color linkAndButtonTintColor = colorFromRGB(0xACACAC);

    /// These win over the theme's texts while they are set.
    ChannelTitles titles;
    /// The theme's menu style in lower case, whether known or not.
    std::optional<std::string> menuStyle;

    // The rest is the host's alone: no theme sets it.
    std::optional<Color> placeholderTextColor;
    std::optional<Color> separatorColor;
    std::optional<Color> linkColor;
    std::optional<Color> darkTextColor;
    std::optional<Color> lightTextColor;

    std::optional<Color> redRatingControlColor;
    std::optional<Color> yellowRatingControlColor;
    std::optional<Color> greenRatingControlColor;

    std::optional<Color> canceledServiceHistoryFooterColor;
    std::optional<Color> completedServiceHistoryFooterColor;
    std::optional<Color> inProgressServiceHistoryFooterColor;
    ImagePtr canceledServiceHistoryFooterIcon;
    ImagePtr completedServiceHistoryFooterIcon;
    ImagePtr inProgressServiceHistoryFooterIcon;

    ImagePtr starOffIcon;
    ImagePtr starOnIcon;
    ImagePtr logo;

    std::optional<Color> sliderOnColor;
    std::optional<Color> sliderOffColor;
    std::optional<Color> sliderTextColor;
    std::optional<Color> sliderBorderColor;
    std::optional<Color> sliderHandleBackgroundColor;
    std::optional<Color> sliderHandleTextColor;
    std::optional<std::string> sliderTextIPadFont;
    std::optional<std::string> sliderTextIPhoneFont;

    std::optional<Color> loginBackgroundColor;
    std::optional<Color> loginFieldBorderColor;
    std::optional<Color> loginFieldBackgroundColor;
    std::optional<Color> loginFieldTextColor;
    std::optional<Color> loginButtonColor;
    std::optional<double> loginFieldTextFontSize;

    std::optional<std::string> homeFontName;
    std::optional<Color> homeSelectedColor;
    std::optional<std::string> callMeFontName;
    std::optional<std::string> ratingFontName;
    std::optional<std::string> chatFontName;
    std::optional<std::string> kbFontName;
    std::optional<double> chatAttachmentIconHeight;

    std::optional<Color> formEntryBorderColorDark;
    std::optional<Color> formEntryTextColorDark;
    std::optional<Color> formLabelRequiredIndicatorColorDark;
    std::optional<Color> formLabelRequiredTextColorDark;
    std::optional<Color> formLabelTextColorDark;
};

}  // namespace supportsdk
