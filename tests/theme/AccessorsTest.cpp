#include <gtest/gtest.h>

#include "supportsdk/core/Fields.h"
#include "supportsdk/theme/Appearance.h"
#include "tests/support/FakePlatform.h"

namespace supportsdk::test {
namespace {

using A = Appearance;
using ColorAccessor = std::function<std::optional<Color>(const Appearance&)>;

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

/// One of each kind of fallback, and the keys that are shared.
TEST_F(AccessorsTest, AnswerTheirKeyAndFallBack) {
    const auto text = colorFromRGB(1), button = colorFromRGB(2), icon = colorFromRGB(3);
    const auto line = colorFromRGB(4), bar = colorFromRGB(5), ground = colorFromRGB(6);
    const auto label = colorFromRGB(7);
    fakes.traits->systemColors = {{"systemBackgroundColor", ground}, {"labelColor", label}};
    const auto common = *parseJson(R"({"textColor": "#1", "buttonColor": "#2", "iconColor": "#3",
                                       "lineColor": "#4", "navigationBarColor": "#5"})");
    const std::vector<std::tuple<const char*, ColorAccessor, Color>> cases = {
        {"homeIconColor", &A::homeIconColor, icon},
        {"homeLineColor", &A::homeLineColor, line},
        {"homeIconColor", &A::callMeHeaderTextColor, text},
        {"homeIconColor", &A::callMeLabelTextColor, text},
        {"callMeButtonTextColor", &A::callMeButtonTextColor, button},
        {"callMeButtonBackgroundColor", &A::callMeButtonBackgroundColor, ground},
        {"chatSendButtonDisabledColor", &A::chatSendButtonDisabledColor, bar},
        {"chatActionButtonBorderColor", &A::chatActionButtonBorderColor, label},
        {"chatIconColor", &A::chatIconColor, icon}};
    for (const auto& [key, accessor, fallback] : cases) {
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
    EXPECT_EQ(theme.menuTextSize() + theme.formLabelTextSize() + theme.formSpacing(), 38.0);
    EXPECT_FALSE(theme.hasMenuBorder());
    EXPECT_EQ(theme.formCancelButtonText() + theme.formSaveButtonText(), "CancelSave");

    fakes.traits->dark = true;
    EXPECT_EQ(theme.buttonColor(), colorFromRGB(0x10A1F2));
    EXPECT_EQ(theme.getColor(0xFF000000), colorFromRGB(0xFFFFFF));
}

TEST_F(AccessorsTest, PreferTheDarkKeyInADarkLookWhenThereIsOne) {
    // Sections of the theme, then the key; of the form's, in any case of letters.
    const std::vector<std::pair<std::vector<const char*>, ColorAccessor>> cases = {
        {{"colors", "textColor"}, &A::textColor},
        {{"menuAppearance", "borderColor"}, &A::menuBorderColor},
        {{"navigationBarAppearance", "backgroundColor"}, &A::navigationBarBackgroundColor},
        {{"formAppearance", "Entry", "BorderColor"}, &A::formEntryBorderColor},
        {{"formAppearance", "label", "requiredIndicatorColor"},
         &A::formLabelRequiredIndicatorColor}};
    for (const auto& [path, accessor] : cases) {
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

TEST_F(AccessorsTest, GiveMenuEntriesTheirTextAndIconAndLetTitlesWin) {
    fakes.kitBundle->files["i.png"] = "picture";
    const auto textFor = [&](const char* entry, const auto& accessor) {
        theme.configureWithSettings({{"menu", {{entry, {{"text", entry}, {"icon", "i"}}}}}});
        return (theme.*accessor)();
    };
    EXPECT_EQ(textFor("callMe", &A::callMeMenuText), std::nullopt) << "not under this name";
    EXPECT_EQ(textFor("callme", &A::callMeMenuText), "callme");
    EXPECT_NE(theme.callMeMenuIcon(), nullptr);
    theme.titles.kbTitle = "";
    EXPECT_EQ(textFor("knowledge", &A::knowledgeMenuText), "");
    EXPECT_EQ(textFor("exit", &A::exitMenuText), "exit");
}

}  // namespace
}  // namespace supportsdk::test
