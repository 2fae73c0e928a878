#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Platform.h"
#include "supportsdk/theme/AppearanceAttributes.h"
#include "supportsdk/theme/ChatImageReceiver.h"
#include "supportsdk/theme/Colors.h"
#include "supportsdk/theme/ThemeStore.h"

namespace supportsdk {

class ThemeImages;

/// The theme: colours, pictures, menu texts and settings of forms, for the look that the system
/// wants at the moment of asking. Its JSON comes from the kit's default file, from the host and
/// from the service's settings, each applied over the last; docs/configuration.md has its keys.
/// Values of the wrong type, bad colours and unknown pictures are skipped. Main thread only.
class SUPPORTSDK_API Appearance : public AppearanceAttributes {
 public:
    explicit Appearance(PlatformPtr platform);
    ~Appearance() = default;
    Appearance(const Appearance&) = delete;
    Appearance& operator=(const Appearance&) = delete;

    // --- Configuration (Appearance.cpp) ---

    /// Starts from an empty theme, applies the kit's default one, when there is one, and follows
    /// the system's look from now on. Runs once; later calls do nothing.
    void configure();
    void setDefaultAppearance();
    /// Reads the system's colours again.
    void configureDefaultColors();
    /// Gives the theme's colours to all navigation bars.
    void configureNavigationBar();
    /// Follows a change of the system's look; runs by itself once configured.
    void handleTraits();
    /// Whether the system asks for a dark look, now.
    [[nodiscard]] bool darkMode() const;
    /// Where the theme's pictures for the chat go: those of the moment at once, later ones as they
    /// come.
    void setChatImageReceiver(std::weak_ptr<ChatImageReceiver> receiver);

    // --- Reading themes (AppearanceReading.cpp) ---

    /// Applies a theme given as JSON text. Returns why it does not parse, and then changes nothing;
    /// nothing on success.
    std::optional<std::string> configureWithJSON(const std::string& json);

    /// Applies a theme object. Menu, forms and navigation bar gain the keys that it has; colours
    /// and icons are replaced as a whole once it has one of them.
    void configureWithSettings(const Json& settings);
    void processMenuAppearanceWithDictionary(const Json& settings);
    void processFormAppearanceWithDictionary(const Json& settings);
    /// Text and icon of one entry of the menu.
    void addMenuInfo(const Json& info, const std::string& key);

    /// The text of "name.json" in the kit's bundle; nothing when it is missing or is not UTF-8.
    [[nodiscard]] std::optional<std::string> getJSONFromFile(const std::string& name) const;
    /// "name.png" of the kit's bundle, else of the main bundle; null when neither has it or it is
    /// damaged.
    [[nodiscard]] ImagePtr imageForName(const std::string& name) const;

    // --- Colours ---

    [[nodiscard]] static std::optional<Color> colorWithHexString(std::string_view text) {
        return supportsdk::colorWithHexString(text);
    }
    [[nodiscard]] static constexpr Color colorFromRGB(std::uint32_t rgb) {
        return supportsdk::colorFromRGB(rgb);
    }
    /// 0xRRGGBB as a colour, in a dark look its complement.
    [[nodiscard]] Color getColor(std::uint32_t rgb) const;

    [[nodiscard]] std::optional<Color> navigationBarColor() const {
        return color("navigationBarColor");
    }
    [[nodiscard]] Color iconColor() const { return color("iconColor", getColor(0xEF5E0D)); }
    [[nodiscard]] Color buttonColor() const { return color("buttonColor", getColor(0xEF5E0D)); }
    [[nodiscard]] Color lineColor() const { return color("lineColor", getColor(0xE0E0E0)); }
    [[nodiscard]] std::optional<Color> textColor() const {
        return configuration_.color("textColor", "textColorDark", darkMode());
    }

    [[nodiscard]] Color homeIconColor() const { return color("homeIconColor", iconColor()); }
    [[nodiscard]] Color homeLineColor() const { return color("homeLineColor", lineColor()); }
    [[nodiscard]] std::optional<Color> homeTextColor() const { return textual("homeTextColor"); }

    // Header and label of call-me have the colour of the home icons.
    [[nodiscard]] std::optional<Color> callMeHeaderTextColor() const {
        return textual("homeIconColor");
    }
    [[nodiscard]] std::optional<Color> callMeLabelTextColor() const {
        return textual("homeIconColor");
    }
    [[nodiscard]] std::optional<Color> callMeHintTextColor() const {
        return textual("callMeHintTextColor");
    }
    [[nodiscard]] Color callMeButtonTextColor() const {
        return color("callMeButtonTextColor", buttonColor());
    }
    [[nodiscard]] Color callMeButtonBackgroundColor() const {
        return color("callMeButtonBackgroundColor", systemBackgroundColor);
    }

    [[nodiscard]] std::optional<Color> chatRefidTextColor() const {
        return textual("chatRefidTextColor");
    }
    [[nodiscard]] std::optional<Color> chatNavBarColor() const {
        return color("chatNavBarColor", navigationBarColor());
    }
    [[nodiscard]] Color chatSendButtonEnabledColor() const {
        return color("chatSendButtonEnabledColor", buttonColor());
    }
    [[nodiscard]] std::optional<Color> chatSendButtonDisabledColor() const {
        return color("chatSendButtonDisabledColor", navigationBarColor());
    }
    [[nodiscard]] std::optional<Color> chatTimeStampColor() const {
        return textual("chatTimeStampColor");
    }
    /// No key of a theme reaches it.
    [[nodiscard]] Color chatActionButtonTextColor() const { return buttonColor(); }
    /// The text colour of the call-me button, in themes that have a key of this name.
    [[nodiscard]] Color chatActionButtonSelectedTextColor() const {
        return configuration_.contains("chatActionButtonSelectedTextColor")
                   ? color("callMeButtonTextColor", buttonColor())
                   : buttonColor();
    }
    [[nodiscard]] Color chatActionButtonBorderColor() const {
        return color("chatActionButtonBorderColor", labelColor);
    }
    [[nodiscard]] std::optional<Color> chatIconColor() const {
        return color("chatIconColor", color("iconColor"));
    }
    [[nodiscard]] ImagePtr chatAttachmentButtonImage() const {
        return configuration_.image("chatAttachmentButtonImage");
    }
    [[nodiscard]] ImagePtr chatSendButtonImage() const {
        return configuration_.image("chatSendButtonImage");
    }

    [[nodiscard]] std::optional<Color> ratingHeaderTextColor() const {
        return textual("ratingHeaderTextColor");
    }
    [[nodiscard]] std::optional<Color> ratingLabelTextColor() const {
        return textual("ratingLabelTextColor");
    }
    [[nodiscard]] std::optional<Color> ratingHintTextColor() const {
        return textual("ratingHintTextColor");
    }
    [[nodiscard]] Color ratingButtonTextColor() const {
        return color("ratingButtonTextColor", buttonColor());
    }
    [[nodiscard]] Color ratingButtonBackgroundColor() const {
        return color("ratingButtonBackgroundColor", systemBackgroundColor);
    }

    [[nodiscard]] std::optional<Color> kbFolderNameTextColor() const {
        return textual("kbFolderNameTextColor");
    }
    [[nodiscard]] std::optional<Color> kbTextColor() const { return textual("kbTextColor"); }
    [[nodiscard]] Color kbFolderL0BackgroundColor() const {
        return color("kbFolderL0BackgroundColor", systemBackgroundColor);
    }
    [[nodiscard]] ImagePtr kbFolderIcon() const { return configuration_.image("kbFolderIcon"); }

    // --- Navigation bar ---

    [[nodiscard]] std::optional<Color> navigationBarTextColor() const {
        return navigationBarAppearance_.color("textColor", "textColorDark", darkMode());
    }
    [[nodiscard]] std::optional<Color> navigationBarIconColor() const {
        return navigationBarAppearance_.color("iconColor", "iconColorDark", darkMode());
    }
    [[nodiscard]] std::optional<Color> navigationBarBackgroundColor() const {
        return navigationBarAppearance_.color("backgroundColor", "backgroundColorDark", darkMode());
    }

    // --- Menu entries ---

    // The title, when one is set, else what the theme says, else nothing.
    [[nodiscard]] std::optional<std::string> chatMenuText() const {
        return menuText(titles.chatTitle, "chatMenuText");
    }
    [[nodiscard]] std::optional<std::string> callMeMenuText() const {
        return menuText(titles.callmeTitle, "callmeMenuText");
    }
    [[nodiscard]] std::optional<std::string> knowledgeMenuText() const {
        return menuText(titles.kbTitle, "knowledgeMenuText");
    }
    [[nodiscard]] std::optional<std::string> webMenuText() const {
        return menuText(titles.websiteTitle, "webMenuText");
    }
    [[nodiscard]] std::optional<std::string> emailMenuText() const {
        return menuText(titles.emailTitle, "emailMenuText");
    }
    [[nodiscard]] std::optional<std::string> phoneMenuText() const {
        return menuText(titles.phoneTitle, "phoneMenuText");
    }
    [[nodiscard]] std::optional<std::string> formsMenuText() const {
        return menuText(titles.formsTitle, "formsMenuText");
    }
    [[nodiscard]] std::optional<std::string> historyMenuText() const {
        return menuText(titles.historyTitle, "historyMenuText");
    }
    [[nodiscard]] std::optional<std::string> journeysMenuText() const {
        return menuText(titles.journeysTitle, "journeysMenuText");
    }
    [[nodiscard]] std::optional<std::string> exitMenuText() const {
        return menuText(std::nullopt, "exitMenuText");
    }

    [[nodiscard]] ImagePtr chatMenuIcon() const { return menuIcon("chatMenuIcon"); }
    [[nodiscard]] ImagePtr callMeMenuIcon() const { return menuIcon("callmeMenuIcon"); }
    [[nodiscard]] ImagePtr knowledgeMenuIcon() const { return menuIcon("knowledgeMenuIcon"); }
    [[nodiscard]] ImagePtr webMenuIcon() const { return menuIcon("webMenuIcon"); }
    [[nodiscard]] ImagePtr emailMenuIcon() const { return menuIcon("emailMenuIcon"); }
    [[nodiscard]] ImagePtr phoneMenuIcon() const { return menuIcon("phoneMenuIcon"); }
    [[nodiscard]] ImagePtr formsMenuIcon() const { return menuIcon("formsMenuIcon"); }
    [[nodiscard]] ImagePtr historyMenuIcon() const { return menuIcon("historyMenuIcon"); }
    [[nodiscard]] ImagePtr journeysMenuIcon() const { return menuIcon("journeysMenuIcon"); }
    [[nodiscard]] ImagePtr exitMenuIcon() const { return menuIcon("exitMenuIcon"); }

    // --- The menu's look ---

    [[nodiscard]] std::string menuHeading() const {
        return menuAppearance_.text("heading").value_or("Support");
    }
    [[nodiscard]] double menuTextSize() const {
        return menuAppearance_.number("textSize").value_or(14.0);
    }
    [[nodiscard]] std::optional<std::string> menuTextStyle() const {
        return menuAppearance_.text("textStyle");
    }
    [[nodiscard]] std::optional<Color> menuTextColor() const {
        return menuAppearance_.color("textColor", "textColorDark", darkMode());
    }
    [[nodiscard]] std::optional<Color> menuIconColor() const {
        return menuAppearance_.color("iconColor", "iconColorDark", darkMode());
    }
    [[nodiscard]] std::optional<Color> menuBorderColor() const {
        return menuAppearance_.color("borderColor", "borderColorDark", darkMode());
    }
    [[nodiscard]] std::optional<Color> menuBackgroundColor() const {
        return menuAppearance_.color("backgroundColor", "backgroundColorDark", darkMode());
    }
    [[nodiscard]] double menuBorderWidth() const {
        return menuAppearance_.number("borderWidth").value_or(0.0);
    }
    [[nodiscard]] double menuPadding() const {
        return menuAppearance_.number("padding").value_or(0.0);
    }
    [[nodiscard]] double menuSpacing() const {
        return menuAppearance_.number("spacing").value_or(0.0);
    }
    [[nodiscard]] bool hasMenuBorder() const { return menuBorderWidth() > 0; }

    // --- Forms ---

    [[nodiscard]] std::optional<Color> formEntryBorderColor() const {
        return formAppearance_.color("entrybordercolor", "entrybordercolordark", darkMode());
    }
    [[nodiscard]] std::optional<Color> formEntryTextColor() const {
        return formAppearance_.color("entrytextcolor", "entrytextcolordark", darkMode());
    }
    [[nodiscard]] std::optional<Color> formLabelTextColor() const {
        return formAppearance_.color("labeltextcolor", "labeltextcolordark", darkMode());
    }
    [[nodiscard]] std::optional<Color> formLabelRequiredTextColor() const {
        return formAppearance_.color("labelrequiredtextcolor", "labelrequiredtextcolordark",
                                     darkMode());
    }
    [[nodiscard]] std::optional<Color> formLabelRequiredIndicatorColor() const {
        return formAppearance_.color("labelrequiredindicatorcolor",
                                     "labelrequiredindicatorcolordark", darkMode());
    }
    [[nodiscard]] double formLabelTextSize() const {
        return formAppearance_.number("labeltextsize").value_or(14.0);
    }
    [[nodiscard]] double formEntryTextSize() const {
        return formAppearance_.number("entrytextsize").value_or(14.0);
    }
    [[nodiscard]] double formEntryBorderWidth() const {
        return formAppearance_.number("entryborderwidth").value_or(0.0);
    }
    [[nodiscard]] std::optional<std::string> formLabelTextStyle() const {
        return formAppearance_.text("labeltextstyle");
    }
    [[nodiscard]] std::optional<std::string> formEntryTextStyle() const {
        return formAppearance_.text("entrytextstyle");
    }
    [[nodiscard]] double formSpacing() const {
        return formAppearance_.number("spacing").value_or(10.0);
    }
    [[nodiscard]] std::string formCancelButtonText() const {
        return formAppearance_.text("cancelbuttontext").value_or("Cancel");
    }
    [[nodiscard]] std::string formSaveButtonText() const {
        return formAppearance_.text("savebuttontext").value_or("Save");
    }

 private:
    [[nodiscard]] std::optional<Color> color(std::string_view key) const {
        return configuration_.color(key);
    }
    [[nodiscard]] Color color(std::string_view key, Color fallback) const {
        return color(key).value_or(fallback);
    }
    [[nodiscard]] std::optional<Color> color(std::string_view key,
                                             std::optional<Color> fallback) const {
        const auto own = color(key);
        return own ? own : fallback;
    }
    [[nodiscard]] std::optional<Color> textual(std::string_view key) const {
        return color(key, textColor());
    }
    [[nodiscard]] std::optional<std::string> menuText(const std::optional<std::string>& title,
                                                      std::string_view key) const {
        return title ? title : menuConfiguration_.text(key);
    }
    [[nodiscard]] ImagePtr menuIcon(std::string_view key) const {
        return menuConfiguration_.image(key);
    }

    void processNavigationBarAppearance(const Json& settings);
    void addMenuInfo(const Json& info, const std::string& key, ThemeImages& images);
    void applyColorsAndIcons(const Json& settings, ThemeImages& images);
    void giveImagesToChat() const;

    PlatformPtr platform_;
    std::weak_ptr<ChatImageReceiver> chatImageReceiver_;
    ThemeStore configuration_;
    ThemeStore menuConfiguration_;
    ThemeStore menuAppearance_;
    ThemeStore formAppearance_;
    ThemeStore navigationBarAppearance_;
    Registration traitsObservation_;
};

}  // namespace supportsdk
