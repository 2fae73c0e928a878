#include <gtest/gtest.h>

#include "supportsdk/core/Fields.h"
#include "supportsdk/theme/Appearance.h"
#include "tests/support/FakePlatform.h"

namespace supportsdk::test {
namespace {

using A = Appearance;
using T = ChannelTitles;
using ColorAccessor = std::function<std::optional<Color>(const Appearance&)>;
using ImageAccessor = ImagePtr (Appearance::*)() const;
using TextAccessor = std::optional<std::string> (Appearance::*)() const;

constexpr Color own = colorFromRGB(0x010203);
constexpr Color ownDark = colorFromRGB(0x040506);

class AccessorsTest : public testing::Test {
 protected:
    FakePlatform fakes;
    Appearance theme{fakes.platform};
};

TEST(Colors, AreReadAsHexadecimalNumbers) {
    const std::map<std::string, std::uint32_t> numbers = {{"#1F3350", 0x1F3350},
                                                          {"#ef5e0d", 0xEF5E0D},
                                                          {"#F", 0xF},
                                                          {"#80FF7F01", 0xFF7F01},
                                                          {"#FFFFFFFFFFFFFFFFF", 0xFFFFFF},
                                                          {"# \t0xABCDEF", 0xABCDEF},
                                                          {"#0xG", 0},
                                                          {"#12ZZ", 0x12}};
    for (const auto& [text, rgb] : numbers)
        EXPECT_EQ(colorWithHexString(text), colorFromRGB(rgb)) << text;
    for (const auto* text :
         {"", "#", "#  ", "##12", "#-1", "1F3350", " #1F3350", "0x1F3350", "red"})
        EXPECT_EQ(colorWithHexString(text), std::nullopt) << text;
}

TEST_F(AccessorsTest, AnswerTheirKeyAndFallBack) {
    const auto text = colorFromRGB(1), button = colorFromRGB(2), icon = colorFromRGB(3);
    const auto line = colorFromRGB(4), bar = colorFromRGB(5), ground = colorFromRGB(6),
               label = colorFromRGB(7);
    fakes.traits->systemColors = {{"systemBackgroundColor", ground}, {"labelColor", label}};
    const auto common = *parseJson(R"({"textColor": "#1", "buttonColor": "#2", "iconColor": "#3",
                                       "lineColor": "#4", "navigationBarColor": "#5"})");
    struct Case {
        const char* key;
        ColorAccessor accessor;
        Color fallback;
    };
    for (const auto& [key, accessor, fallback] : std::initializer_list<Case>{
             {"homeIconColor", &A::homeIconColor, icon},
             {"homeLineColor", &A::homeLineColor, line},
             {"homeTextColor", &A::homeTextColor, text},
             {"homeIconColor", &A::callMeHeaderTextColor, text},
             {"homeIconColor", &A::callMeLabelTextColor, text},
             {"callMeHintTextColor", &A::callMeHintTextColor, text},
             {"callMeButtonTextColor", &A::callMeButtonTextColor, button},
             {"callMeButtonBackgroundColor", &A::callMeButtonBackgroundColor, ground},
             {"chatRefidTextColor", &A::chatRefidTextColor, text},
             {"chatNavBarColor", &A::chatNavBarColor, bar},
             {"chatSendButtonEnabledColor", &A::chatSendButtonEnabledColor, button},
             {"chatSendButtonDisabledColor", &A::chatSendButtonDisabledColor, bar},
             {"chatTimeStampColor", &A::chatTimeStampColor, text},
             {"chatActionButtonBorderColor", &A::chatActionButtonBorderColor, label},
             {"chatIconColor", &A::chatIconColor, icon},
             {"ratingHeaderTextColor", &A::ratingHeaderTextColor, text},
             {"ratingLabelTextColor", &A::ratingLabelTextColor, text},
             {"ratingHintTextColor", &A::ratingHintTextColor, text},
             {"ratingButtonTextColor", &A::ratingButtonTextColor, button},
             {"ratingButtonBackgroundColor", &A::ratingButtonBackgroundColor, ground},
             {"kbFolderNameTextColor", &A::kbFolderNameTextColor, text},
             {"kbTextColor", &A::kbTextColor, text},
             {"kbFolderL0BackgroundColor", &A::kbFolderL0BackgroundColor, ground}}) {
        theme.configureWithSettings({{"colors", common}});
        EXPECT_EQ(accessor(theme), fallback) << key;
        auto colors = common;
        colors[key] = "#010203";
        theme.configureWithSettings({{"colors", colors}});
        EXPECT_EQ(accessor(theme), own) << key;
    }
}

TEST_F(AccessorsTest, CrossTheKeysOfActionButtons) {
    const auto button = colorFromRGB(0x200000);
    Json colors = {{"buttonColor", "#200000"},
                   {"callMeButtonTextColor", "#010203"},
                   {"chatActionButtonTextColor", "#040506"}};
    theme.configureWithSettings({{"colors", colors}});
    EXPECT_EQ(theme.chatActionButtonTextColor(), button);
    EXPECT_EQ(theme.chatActionButtonSelectedTextColor(), button);

    colors["chatActionButtonSelectedTextColor"] = "#040506";
    theme.configureWithSettings({{"colors", colors}});
    EXPECT_EQ(theme.chatActionButtonSelectedTextColor(), own);
    colors.erase("callMeButtonTextColor");
    theme.configureWithSettings({{"colors", colors}});
    EXPECT_EQ(theme.chatActionButtonSelectedTextColor(), button);
}

TEST_F(AccessorsTest, AnswerWithoutAnyTheme) {
    EXPECT_EQ(theme.iconColor(), colorFromRGB(0xEF5E0D));
    EXPECT_EQ(theme.lineColor(), colorFromRGB(0xE0E0E0));
    EXPECT_EQ(theme.textColor(), std::nullopt);
    // The colour of icons, not its default.
    EXPECT_EQ(theme.chatIconColor(), std::nullopt);
    EXPECT_EQ(theme.menuHeading(), "Support");
    EXPECT_EQ(theme.menuTextSize(), 14.0);
    EXPECT_FALSE(theme.hasMenuBorder());
    EXPECT_EQ(theme.formLabelTextSize(), 14.0);
    EXPECT_EQ(theme.formSpacing(), 10.0);
    EXPECT_EQ(theme.formCancelButtonText(), "Cancel");
    EXPECT_EQ(theme.formSaveButtonText(), "Save");

    fakes.traits->dark = true;
    EXPECT_EQ(theme.buttonColor(), colorFromRGB(0x10A1F2));
    EXPECT_EQ(theme.getColor(0xFF000000), colorFromRGB(0xFFFFFF));
}

TEST_F(AccessorsTest, PreferTheDarkKeyInADarkLookWhenThereIsOne) {
    struct Case {
        std::vector<const char*> path;  // sections of the theme, then the key
        ColorAccessor accessor;
    };
    for (const auto& [path, accessor] : std::initializer_list<Case>{
             {{"colors", "textColor"}, &A::textColor},
             {{"menuAppearance", "textColor"}, &A::menuTextColor},
             {{"menuAppearance", "iconColor"}, &A::menuIconColor},
             {{"menuAppearance", "borderColor"}, &A::menuBorderColor},
             {{"menuAppearance", "backgroundColor"}, &A::menuBackgroundColor},
             {{"navigationBarAppearance", "textColor"}, &A::navigationBarTextColor},
             {{"navigationBarAppearance", "iconColor"}, &A::navigationBarIconColor},
             {{"navigationBarAppearance", "backgroundColor"}, &A::navigationBarBackgroundColor},
             {{"formAppearance", "Entry", "BorderColor"}, &A::formEntryBorderColor},
             {{"formAppearance", "entry", "textColor"}, &A::formEntryTextColor},
             {{"formAppearance", "label", "textColor"}, &A::formLabelTextColor},
             {{"formAppearance", "label", "requiredTextColor"}, &A::formLabelRequiredTextColor},
             {{"formAppearance", "label", "requiredIndicatorColor"},
              &A::formLabelRequiredIndicatorColor}}) {
        Json::json_pointer key;
        for (const auto* part : path) key /= part;
        const auto darkKey = key.parent_pointer() / (std::string(path.back()) + "Dark");
        Json settings;
        settings[key] = "#010203";
        fakes.traits->dark = true;
        theme.configureWithSettings(settings);
        EXPECT_EQ(accessor(theme), own) << key;
        settings[darkKey] = "#040506";
        theme.configureWithSettings(settings);
        EXPECT_EQ(accessor(theme), ownDark) << key;
        fakes.traits->dark = false;
        EXPECT_EQ(accessor(theme), own) << key;
    }
}

TEST_F(AccessorsTest, GiveEachMenuEntryItsTextAndIconAndLetTitlesWin) {
    struct Case {
        const char* entry;
        TextAccessor text;
        ImageAccessor icon;
        std::optional<std::string> ChannelTitles::*title;
    };
    fakes.kitBundle->files["i.png"] = "picture";
    for (const auto& [entry, text, icon, title] : std::initializer_list<Case>{
             {"chat", &A::chatMenuText, &A::chatMenuIcon, &T::chatTitle},
             {"callme", &A::callMeMenuText, &A::callMeMenuIcon, &T::callmeTitle},
             {"knowledge", &A::knowledgeMenuText, &A::knowledgeMenuIcon, &T::kbTitle},
             {"web", &A::webMenuText, &A::webMenuIcon, &T::websiteTitle},
             {"email", &A::emailMenuText, &A::emailMenuIcon, &T::emailTitle},
             {"phone", &A::phoneMenuText, &A::phoneMenuIcon, &T::phoneTitle},
             {"forms", &A::formsMenuText, &A::formsMenuIcon, &T::formsTitle},
             {"history", &A::historyMenuText, &A::historyMenuIcon, &T::historyTitle},
             {"journeys", &A::journeysMenuText, &A::journeysMenuIcon, &T::journeysTitle},
             {"exit", &A::exitMenuText, &A::exitMenuIcon, nullptr}}) {
        theme.configureWithSettings({{"menu", {{entry, {{"text", entry}, {"icon", "i"}}}}}});
        EXPECT_EQ((theme.*text)(), entry);
        EXPECT_NE((theme.*icon)(), nullptr) << entry;
        if (!title) continue;
        theme.titles.*title = "";
        EXPECT_EQ((theme.*text)(), "") << entry;
    }
    Appearance other{fakes.platform};
    other.configureWithSettings({{"menu", {{"callMe", {{"text", "not under this name"}}}}}});
    EXPECT_EQ(other.callMeMenuText(), std::nullopt);
}

}  // namespace
}  // namespace supportsdk::test
