#include "supportsdk/theme/Appearance.h"

#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/theme/ThemeImages.h"
#include "tests/core/SupportFixture.h"

namespace supportsdk::test {
namespace {

struct CountingCodec : FakeImageCodec {
    ImagePtr decode(std::span<const std::byte> data) override {
        ++decoded;
        return bytes ? std::make_shared<Image>(Image{1, 1, std::vector<std::uint8_t>(bytes)})
                     : FakeImageCodec::decode(data);
    }
    int decoded = 0;
    std::size_t bytes = 0;
};

class AppearanceTest : public testing::Test {
 protected:
    AppearanceTest() { fakes.platform->images = codec; }

    FakePlatform fakes;
    std::shared_ptr<CountingCodec> codec = std::make_shared<CountingCodec>();
    Appearance theme{fakes.platform};
};

TEST_F(AppearanceTest, AppliesTheDefaultThemeOnceAndFollowsTheLook) {
    fakes.traits->dark = true;
    fakes.traits->systemColors = {{"labelColor", colorFromRGB(0x111111)}};
    fakes.kitBundle->files["default_appearance.json"] =
        R"({"menu": {"chat": {"text": "Chat!"}},
            "navigationBarAppearance": {"textColor": "#000001", "textColorDark": "#000002",
                                        "backgroundColor": "#000003", "iconColor": "#000004",
                                        "iconColorDark": "#000005"}})";
    theme.configure();
    EXPECT_EQ(theme.chatMenuText(), "Chat!");
    EXPECT_TRUE(fakes.progress->darkStyle);
    EXPECT_EQ(theme.labelColor, colorFromRGB(0x111111));
    EXPECT_EQ(theme.systemBackgroundColor, colorFromRGB(0xFFFFFF));
    EXPECT_FALSE(fakes.globalAppearance->translucent);
    EXPECT_EQ(fakes.globalAppearance->barTint, colorFromRGB(2));
    EXPECT_EQ(fakes.globalAppearance->barBackground, colorFromRGB(3));
    EXPECT_EQ(fakes.globalAppearance->controlTint, colorFromRGB(5));

    fakes.traits->systemColors = {{"labelColor", colorFromRGB(0x222222)}};
    fakes.traits->setDark(false);
    EXPECT_EQ(theme.labelColor, colorFromRGB(0x222222));
    EXPECT_EQ(fakes.globalAppearance->barTint, colorFromRGB(1));
    EXPECT_EQ(fakes.globalAppearance->controlTint, colorFromRGB(4));
    EXPECT_FALSE(fakes.progress->darkStyle);

    theme.configureWithSettings({{"menu", {{"chat", {{"text", "Talk"}}}}}});
    theme.configure();
    EXPECT_EQ(theme.chatMenuText(), "Talk");
}

TEST_F(AppearanceTest, ReplacesColoursAndIconsTogetherAndMergesTheRest) {
    fakes.kitBundle->files["i.png"] = "picture";
    theme.configureWithSettings(
        {{"colors", {{"textColor", "#111111"}, {"iconColor", "#222222"}}},
         {"icons", {{"kbFolderIcon", "i"}}},
         {"navigationBarAppearance",
          {{"textColor", "#333333"}, {"navigationBarColor", "#444444"}, {"size", "#555555"}}},
         {"menuAppearance", {{"heading", "Help"}, {"Style", "NoMenu"}}},
         {"formAppearance", {{"SaveButtonText", "OK"}, {"entry", {{"textSize", 20}}}}}});
    EXPECT_EQ(theme.navigationBarColor(), std::nullopt);

    // Nothing in it that counts: colours and icons stay.
    theme.configureWithSettings({{"colors", {{"textColor", "999999"}}},
                                 {"icons", {{"kbFolderIcon", "unknown"}}},
                                 {"menuAppearance", {{"textSize", 16}}}});
    EXPECT_EQ(theme.textColor(), colorFromRGB(0x111111));
    EXPECT_NE(theme.kbFolderIcon(), nullptr);

    theme.configureWithSettings({{"colors", {{"lineColor", "#666666"}}},
                                 {"navigationBarAppearance", {{"iconColor", "#777777"}}},
                                 {"menuAppearance", {{"textStyle", "bold"}}},
                                 {"formAppearance", {{"label", {{"textSize", 9}}}}}});
    EXPECT_EQ(theme.lineColor(), colorFromRGB(0x666666));
    EXPECT_EQ(theme.textColor(), std::nullopt);
    EXPECT_EQ(theme.iconColor(), colorFromRGB(0xEF5E0D));
    EXPECT_EQ(theme.kbFolderIcon(), nullptr);
    EXPECT_EQ(theme.navigationBarTextColor(), colorFromRGB(0x333333));
    EXPECT_EQ(theme.menuHeading(), "Help");
    EXPECT_EQ(theme.menuStyle, "nomenu");
    EXPECT_EQ(theme.menuTextSize(), 16);
    EXPECT_EQ(theme.formEntryTextSize(), 20);
    EXPECT_EQ(theme.formSaveButtonText(), "OK");
}

TEST_F(AppearanceTest, CutsSizesAndKeepsPlainFormValues) {
    theme.configureWithSettings(
        {{"menuAppearance", {{"borderWidth", 0.9}, {"padding", "12px"}, {"textSize", 1e300}}},
         {"formAppearance",
          {{"spacing", 7.5},
           {"label", {{"textSize", 14.5}, {"textStyle", "Bold"}}},
           {"ENTRY", {{"BorderWidth", true}, {"textSize", "large"}}}}}});
    EXPECT_FALSE(theme.hasMenuBorder());
    EXPECT_EQ(theme.menuPadding(), 12);
    EXPECT_EQ(theme.menuTextSize(), 9223372036854775807.0);
    EXPECT_EQ(theme.formSpacing(), 7.5);
    EXPECT_EQ(theme.formLabelTextSize(), 14);
    EXPECT_EQ(theme.formLabelTextStyle(), "Bold");
    EXPECT_EQ(theme.formEntryBorderWidth(), 1);
    EXPECT_EQ(theme.formEntryTextSize(), 14);
}

TEST_F(AppearanceTest, SkipsWhatIsOfTheWrongType) {
    const auto sections = {"menu",   "menuAppearance", "formAppearance", "navigationBarAppearance",
                           "colors", "icons"};
    const auto odd = Json::array({nullptr, true, 7, -1e300, "text", Json::array({1}),
                                  Json::object({{"", nullptr}, {"text", 7}, {"icon", 7}})});
    for (const auto& value : odd) {
        theme.configureWithSettings(value);
        for (const auto* section : sections) {
            theme.configureWithSettings({{section, value}});
            theme.configureWithSettings(
                {{section,
                  {{"chat", value}, {"heading", value}, {"textColor", value}, {"label", value}}}});
        }
        theme.configureWithSettings({{"menuAppearance", {{"style", Json::array()}}}});
    }
    EXPECT_EQ(theme.chatMenuText(), std::nullopt);
    EXPECT_EQ(theme.chatMenuIcon(), nullptr);
    EXPECT_EQ(theme.menuTextColor(), std::nullopt);
    EXPECT_EQ(theme.textColor(), std::nullopt);
    EXPECT_EQ(theme.menuStyle, std::nullopt);
}

TEST_F(AppearanceTest, SaysWhyATextDoesNotParseAndChangesNothing) {
    EXPECT_EQ(theme.configureWithJSON(R"({"menuAppearance": {"heading": "Help"}})"), std::nullopt);
    EXPECT_EQ(theme.configureWithJSON(R"({"menuAppearance": {"heading": )"),
              "The theme is not valid JSON: the error is at byte 32.");
    for (const auto& text : {std::string(), std::string(100'000, '['), std::string("[1e999]"),
                             std::string("{\"menuAppearance\":\"\xff\"}")}) {
        EXPECT_NE(theme.configureWithJSON(text), std::nullopt) << text.substr(0, 20);
    }
    EXPECT_EQ(theme.menuHeading(), "Help");

    fakes.kitBundle->files = {{"good.json", "\xC3\xA4"}, {"bad.json", "\xC3"}};
    EXPECT_EQ(theme.getJSONFromFile("good"), "\xC3\xA4");
    EXPECT_EQ(theme.getJSONFromFile("bad"), std::nullopt);
    EXPECT_EQ(theme.getJSONFromFile("missing"), std::nullopt);
}

TEST_F(AppearanceTest, BoundsWhatAThemeMayName) {
    Json same, many, colors;
    for (int i = 0; i < 2000; ++i) {
        const auto name = std::to_string(i);
        fakes.kitBundle->files[name + ".png"] = "picture";
        same[name] = "0";
        many[name] = name;
        colors[name + "color"] = "#123456";
    }
    fakes.mainBundle->files = {{"0.png", "bad"}};
    theme.configureWithSettings({{"icons", same}, {"menu", {{"chat", {{"icon", "0"}}}}}});
    EXPECT_EQ(codec->decoded, 1);
    theme.configureWithSettings({{"icons", many}, {"menuAppearance", colors}});
    EXPECT_EQ(codec->decoded, 1 + static_cast<int>(ThemeImages::maximumNames));
    theme.configureWithSettings({{"menuAppearance", {{"heading", "no room for it"}}}});
    EXPECT_EQ(theme.menuHeading(), "Support");

    codec->bytes = ThemeImages::maximumBytes / 2;
    codec->decoded = 0;
    theme.configureWithSettings({{"icons", many}});
    EXPECT_EQ(codec->decoded, 3);
}

class ThemeAndChatTest : public SupportTest {};

TEST_F(ThemeAndChatTest, ReachesTheChatThatIsAttachedAfterTheFirstTheme) {
    fakes.kitBundle->files["clip.png"] = fakes.mainBundle->files["plane.png"] = "picture";
    fakes.kitBundle->files["default_appearance.json"] =
        R"({"icons": {"chatAttachmentButtonImage": "clip"}})";
    const auto support = start();
    const auto& look = support->chat->appearance;
    const auto clip = look.chatAttachmentButtonImage;
    EXPECT_NE(clip, nullptr);
    EXPECT_EQ(clip, support->appearance->chatAttachmentButtonImage());

    fakes.http->answer(
        0, 200, {{"advancedConfiguration", {{"icons", {{"chatSendButtonImage", "plane"}}}}}});
    EXPECT_NE(look.chatSendButtonImage, nullptr);
    EXPECT_EQ(look.chatSendButtonImage, support->appearance->chatSendButtonImage());
    // Gone from the theme; the chat keeps it.
    EXPECT_EQ(support->appearance->chatAttachmentButtonImage(), nullptr);
    EXPECT_EQ(look.chatAttachmentButtonImage, clip);
}

}  // namespace
}  // namespace supportsdk::test
