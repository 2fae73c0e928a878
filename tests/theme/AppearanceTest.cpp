#include "supportsdk/theme/Appearance.h"

#include <gtest/gtest.h>

#include "tests/support/FakePlatform.h"

namespace supportsdk::test {
namespace {

class AppearanceTest : public testing::Test {
 protected:
    FakePlatform fakes;
    Appearance theme{fakes.platform};
};

TEST_F(AppearanceTest, TakesMenuTextsAndLetsTitlesWin) {
    theme.configureWithSettings(
        {{"menu", {{"chat", {{"text", "Talk"}}}, {"exit", {{"text", "Leave"}}}}}});
    EXPECT_EQ(theme.chatMenuText(), "Talk");
    EXPECT_EQ(theme.exitMenuText(), "Leave");
    EXPECT_EQ(theme.webMenuText(), std::nullopt);

    theme.titles.chatTitle = "Ask us";
    EXPECT_EQ(theme.chatMenuText(), "Ask us");
    theme.titles.chatTitle.reset();
    EXPECT_EQ(theme.chatMenuText(), "Talk");
}

TEST_F(AppearanceTest, ReadsTheCallMeTextUnderItsLowerCaseNameOnly) {
    theme.configureWithSettings({{"menu", {{"callMe", {{"text", "No"}}}}}});
    EXPECT_EQ(theme.callMeMenuText(), std::nullopt);
    theme.configureWithSettings({{"menu", {{"callme", {{"text", "Yes"}}}}}});
    EXPECT_EQ(theme.callMeMenuText(), "Yes");
}

TEST_F(AppearanceTest, MergesTheMenusLookKeyByKey) {
    EXPECT_EQ(theme.menuHeading(), "Support");
    EXPECT_EQ(theme.menuStyle, std::nullopt);
    theme.configureWithSettings({{"menuAppearance", {{"heading", "Help"}, {"Style", "NoMenu"}}}});
    theme.configureWithSettings({{"menuAppearance", {{"textStyle", "bold"}}}});
    EXPECT_EQ(theme.menuHeading(), "Help");
    EXPECT_EQ(theme.menuStyle, "nomenu");
}

TEST_F(AppearanceTest, SkipsWhatIsOfTheWrongType) {
    for (const auto& odd :
         {Json("text"), Json::array({1}), Json{{"menu", 1}, {"menuAppearance", "x"}},
          Json{{"menu", {{"chat", "x"}, {"web", {{"text", 7}}}}},
               {"menuAppearance", {{"heading", 7}, {"style", Json::array()}}}}}) {
        theme.configureWithSettings(odd);
    }
    EXPECT_EQ(theme.webMenuText(), std::nullopt);
    EXPECT_EQ(theme.menuHeading(), "Support");
    EXPECT_EQ(theme.menuStyle, std::nullopt);
}

TEST_F(AppearanceTest, ReportsTextThatDoesNotParseAndChangesNothing) {
    EXPECT_EQ(theme.configureWithJSON(R"({"menuAppearance":{"heading":"Help"}})"), std::nullopt);
    EXPECT_NE(theme.configureWithJSON(R"({"menuAppearance":{"heading":)"), std::nullopt);
    EXPECT_EQ(theme.menuHeading(), "Help");
}

TEST_F(AppearanceTest, AppliesTheDefaultThemeOnce) {
    fakes.traits->dark = true;
    fakes.kitBundle->files["default_appearance.json"] = R"({"menu":{"chat":{"text":"Chat!"}}})";
    theme.configure();
    EXPECT_EQ(theme.chatMenuText(), "Chat!");
    EXPECT_TRUE(fakes.progress->darkStyle);

    theme.configureWithSettings({{"menu", {{"chat", {{"text", "Talk"}}}}}});
    theme.configure();
    EXPECT_EQ(theme.chatMenuText(), "Talk");
}

}  // namespace
}  // namespace supportsdk::test
