#include "hosts/cli/ThemeReport.h"

#include <functional>

#include "hosts/cli/Looks.h"

namespace supportsdk::host {

namespace {

/// One thing that the theme is asked for, be it an operation or a field.
template <typename Value>
struct Named {
    const char* name;
    Value (*read)(const Appearance& theme);
};

template <typename Value, auto member>
Value read(const Appearance& theme) {
    return std::invoke(member, theme);
}

using MaybeColor = std::optional<Color>;
using MaybeText = std::optional<std::string>;

constexpr Named<MaybeColor> colors[] = {
    {"navigationBarColor", read<MaybeColor, &Appearance::navigationBarColor>},
    {"iconColor", read<MaybeColor, &Appearance::iconColor>},
    {"buttonColor", read<MaybeColor, &Appearance::buttonColor>},
    {"lineColor", read<MaybeColor, &Appearance::lineColor>},
    {"textColor", read<MaybeColor, &Appearance::textColor>},
    {"homeIconColor", read<MaybeColor, &Appearance::homeIconColor>},
    {"homeLineColor", read<MaybeColor, &Appearance::homeLineColor>},
    {"homeTextColor", read<MaybeColor, &Appearance::homeTextColor>},
    {"callMeHeaderTextColor", read<MaybeColor, &Appearance::callMeHeaderTextColor>},
    {"callMeLabelTextColor", read<MaybeColor, &Appearance::callMeLabelTextColor>},
    {"callMeHintTextColor", read<MaybeColor, &Appearance::callMeHintTextColor>},
    {"callMeButtonTextColor", read<MaybeColor, &Appearance::callMeButtonTextColor>},
    {"callMeButtonBackgroundColor", read<MaybeColor, &Appearance::callMeButtonBackgroundColor>},
    {"chatRefidTextColor", read<MaybeColor, &Appearance::chatRefidTextColor>},
    {"chatNavBarColor", read<MaybeColor, &Appearance::chatNavBarColor>},
    {"chatSendButtonEnabledColor", read<MaybeColor, &Appearance::chatSendButtonEnabledColor>},
    {"chatSendButtonDisabledColor", read<MaybeColor, &Appearance::chatSendButtonDisabledColor>},
    {"chatTimeStampColor", read<MaybeColor, &Appearance::chatTimeStampColor>},
    {"chatActionButtonTextColor", read<MaybeColor, &Appearance::chatActionButtonTextColor>},
    {"chatActionButtonSelectedTextColor",
     read<MaybeColor, &Appearance::chatActionButtonSelectedTextColor>},
    {"chatActionButtonBorderColor", read<MaybeColor, &Appearance::chatActionButtonBorderColor>},
    {"chatIconColor", read<MaybeColor, &Appearance::chatIconColor>},
    {"ratingHeaderTextColor", read<MaybeColor, &Appearance::ratingHeaderTextColor>},
    {"ratingLabelTextColor", read<MaybeColor, &Appearance::ratingLabelTextColor>},
    {"ratingHintTextColor", read<MaybeColor, &Appearance::ratingHintTextColor>},
    {"ratingButtonTextColor", read<MaybeColor, &Appearance::ratingButtonTextColor>},
    {"ratingButtonBackgroundColor", read<MaybeColor, &Appearance::ratingButtonBackgroundColor>},
    {"kbFolderNameTextColor", read<MaybeColor, &Appearance::kbFolderNameTextColor>},
    {"kbTextColor", read<MaybeColor, &Appearance::kbTextColor>},
    {"kbFolderL0BackgroundColor", read<MaybeColor, &Appearance::kbFolderL0BackgroundColor>},
    {"menuTextColor", read<MaybeColor, &Appearance::menuTextColor>},
    {"menuIconColor", read<MaybeColor, &Appearance::menuIconColor>},
    {"menuBorderColor", read<MaybeColor, &Appearance::menuBorderColor>},
    {"menuBackgroundColor", read<MaybeColor, &Appearance::menuBackgroundColor>},
    {"formEntryBorderColor", read<MaybeColor, &Appearance::formEntryBorderColor>},
    {"formEntryTextColor", read<MaybeColor, &Appearance::formEntryTextColor>},
    {"formLabelTextColor", read<MaybeColor, &Appearance::formLabelTextColor>},
    {"formLabelRequiredTextColor", read<MaybeColor, &Appearance::formLabelRequiredTextColor>},
    {"formLabelRequiredIndicatorColor",
     read<MaybeColor, &Appearance::formLabelRequiredIndicatorColor>},
    {"navigationBarTextColor", read<MaybeColor, &Appearance::navigationBarTextColor>},
    {"navigationBarIconColor", read<MaybeColor, &Appearance::navigationBarIconColor>},
    {"navigationBarBackgroundColor", read<MaybeColor, &Appearance::navigationBarBackgroundColor>},
    {"labelColor", read<MaybeColor, &Appearance::labelColor>},
    {"placeholderTextColor", read<MaybeColor, &Appearance::placeholderTextColor>},
    {"systemBackgroundColor", read<MaybeColor, &Appearance::systemBackgroundColor>},
    {"secondarySystemBackgroundColor",
     read<MaybeColor, &Appearance::secondarySystemBackgroundColor>},
    {"separatorColor", read<MaybeColor, &Appearance::separatorColor>},
    {"linkColor", read<MaybeColor, &Appearance::linkColor>},
    {"darkTextColor", read<MaybeColor, &Appearance::darkTextColor>},
    {"lightTextColor", read<MaybeColor, &Appearance::lightTextColor>},
    {"badgeBackgroundColor", read<MaybeColor, &Appearance::badgeBackgroundColor>},
    {"homeBackgroundColor", read<MaybeColor, &Appearance::homeBackgroundColor>},
    {"linkAndButtonTintColor", read<MaybeColor, &Appearance::linkAndButtonTintColor>},
};

constexpr Named<MaybeText> texts[] = {
    {"chatMenuText", read<MaybeText, &Appearance::chatMenuText>},
    {"callMeMenuText", read<MaybeText, &Appearance::callMeMenuText>},
    {"knowledgeMenuText", read<MaybeText, &Appearance::knowledgeMenuText>},
    {"webMenuText", read<MaybeText, &Appearance::webMenuText>},
    {"emailMenuText", read<MaybeText, &Appearance::emailMenuText>},
    {"phoneMenuText", read<MaybeText, &Appearance::phoneMenuText>},
    {"formsMenuText", read<MaybeText, &Appearance::formsMenuText>},
    {"historyMenuText", read<MaybeText, &Appearance::historyMenuText>},
    {"journeysMenuText", read<MaybeText, &Appearance::journeysMenuText>},
    {"exitMenuText", read<MaybeText, &Appearance::exitMenuText>},
    {"menuHeading", read<MaybeText, &Appearance::menuHeading>},
    {"menuStyle", read<MaybeText, &Appearance::menuStyle>},
    {"menuTextStyle", read<MaybeText, &Appearance::menuTextStyle>},
    {"formLabelTextStyle", read<MaybeText, &Appearance::formLabelTextStyle>},
    {"formEntryTextStyle", read<MaybeText, &Appearance::formEntryTextStyle>},
    {"formCancelButtonText", read<MaybeText, &Appearance::formCancelButtonText>},
    {"formSaveButtonText", read<MaybeText, &Appearance::formSaveButtonText>},
};

constexpr Named<double> sizes[] = {
    {"menuTextSize", read<double, &Appearance::menuTextSize>},
    {"menuBorderWidth", read<double, &Appearance::menuBorderWidth>},
    {"menuPadding", read<double, &Appearance::menuPadding>},
    {"menuSpacing", read<double, &Appearance::menuSpacing>},
    {"formLabelTextSize", read<double, &Appearance::formLabelTextSize>},
    {"formEntryTextSize", read<double, &Appearance::formEntryTextSize>},
    {"formEntryBorderWidth", read<double, &Appearance::formEntryBorderWidth>},
    {"formSpacing", read<double, &Appearance::formSpacing>},
};

constexpr Named<ImagePtr> icons[] = {
    {"chatMenuIcon", read<ImagePtr, &Appearance::chatMenuIcon>},
    {"callMeMenuIcon", read<ImagePtr, &Appearance::callMeMenuIcon>},
    {"knowledgeMenuIcon", read<ImagePtr, &Appearance::knowledgeMenuIcon>},
    {"webMenuIcon", read<ImagePtr, &Appearance::webMenuIcon>},
    {"emailMenuIcon", read<ImagePtr, &Appearance::emailMenuIcon>},
    {"phoneMenuIcon", read<ImagePtr, &Appearance::phoneMenuIcon>},
    {"formsMenuIcon", read<ImagePtr, &Appearance::formsMenuIcon>},
    {"historyMenuIcon", read<ImagePtr, &Appearance::historyMenuIcon>},
    {"journeysMenuIcon", read<ImagePtr, &Appearance::journeysMenuIcon>},
    {"exitMenuIcon", read<ImagePtr, &Appearance::exitMenuIcon>},
    {"kbFolderIcon", read<ImagePtr, &Appearance::kbFolderIcon>},
    {"chatAttachmentButtonImage", read<ImagePtr, &Appearance::chatAttachmentButtonImage>},
    {"chatSendButtonImage", read<ImagePtr, &Appearance::chatSendButtonImage>},
};

}  // namespace

Json describeTheme(const Appearance& theme) {
    Json fields = {{"dark", theme.darkMode()}};
    for (const auto& [name, color] : colors) putColor(fields["colors"], name, color(theme));
    for (const auto& [name, text] : texts) {
        if (const auto value = text(theme)) fields["texts"][name] = *value;
    }
    for (const auto& [name, size] : sizes) fields["sizes"][name] = size(theme);
    for (const auto& [name, icon] : icons) fields["icons"][name] = describeImage(icon(theme));
    return fields;
}

}  // namespace supportsdk::host
