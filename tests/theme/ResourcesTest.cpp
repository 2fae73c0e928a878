#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>

#include "backends/image/PixbufImageCodec.h"
#include "backends/system/DirectoryBundle.h"
#include "supportsdk/theme/Appearance.h"
#include "tests/support/FakePlatform.h"

namespace supportsdk::test {
namespace {

namespace fs = std::filesystem;

const fs::path drawings = SUPPORTSDK_SOURCE_DIR "/resources/svg";
const fs::path resources = SUPPORTSDK_BINARY_DIR "/resources";

std::string textOf(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// Relative luminance and contrast as WCAG 2.1 defines them.
double luminance(const Color& color) {
    const auto linear = [](std::uint8_t channel) {
        const double value = channel / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}
double contrast(const std::optional<Color>& one, const std::optional<Color>& other) {
    if (!one || !other) return 0;
    const auto [dark, light] = std::minmax({luminance(*one), luminance(*other)});
    return (light + 0.05) / (dark + 0.05);
}

/// Every text under a key that names a colour.
void collectColors(const Json& value, bool named, std::set<std::string>& found) {
    if (value.is_string() && named) found.insert(value.get<std::string>());
    if (!value.is_object()) return;
    for (const auto& [key, inner] : value.items()) {
        collectColors(inner, named || key.find("olor") != std::string::npos, found);
    }
}

/// The kit's real resources behind a theme.
class ResourcesTest : public testing::Test {
 protected:
    ResourcesTest() {
        fakes.platform->kitBundle = std::make_shared<DirectoryBundle>(resources);
        fakes.platform->images = codec;
    }
    ImagePtr decode(const std::string& file) const { return codec->decode(toBytes(textOf(file))); }
    ImagePtr kitImage(const std::string& name) const { return decode((resources / name).string()); }

    std::shared_ptr<PixbufImageCodec> codec = std::make_shared<PixbufImageCodec>();
    FakePlatform fakes;
    Appearance theme{fakes.platform};
};

TEST_F(ResourcesTest, TheDefaultThemeFindsItsPicturesAndColours) {
    std::set<std::string> colors;
    collectColors(Json::parse(textOf(resources / "default_appearance.json")), false, colors);
    EXPECT_GT(colors.size(), 10U);
    for (const auto& text : colors) {
        EXPECT_TRUE(std::regex_match(text, std::regex("#[0-9A-F]{6}"))) << text;
    }

    theme.configure();
    for (const auto icon :
         {&Appearance::chatMenuIcon, &Appearance::callMeMenuIcon, &Appearance::knowledgeMenuIcon,
          &Appearance::webMenuIcon, &Appearance::emailMenuIcon, &Appearance::phoneMenuIcon,
          &Appearance::formsMenuIcon, &Appearance::historyMenuIcon, &Appearance::journeysMenuIcon,
          &Appearance::exitMenuIcon, &Appearance::kbFolderIcon,
          &Appearance::chatAttachmentButtonImage, &Appearance::chatSendButtonImage}) {
        EXPECT_TRUE((theme.*icon)());
    }
}

TEST_F(ResourcesTest, ThemesAreLegibleInLightAndInDark) {
    std::vector<Json> themes = {Json::object()};
    const auto seed = Json::parse(textOf(SUPPORTSDK_SOURCE_DIR "/service/seed.json"));
    for (const auto& integration : seed.at("integrations")) {
        themes.push_back(integration.at("settings").at("advancedConfiguration"));
    }
    theme.configure();
    for (const auto& settings : themes) {
        theme.configureWithSettings(settings);
        for (const bool dark : {false, true}) {
            SCOPED_TRACE(settings.value("menuAppearance", Json()).dump() + (dark ? " dark" : ""));
            fakes.traits->dark = dark;
            const auto ground = colorFromRGB(dark ? 0x000000 : 0xFFFFFF);
            const auto legible = [](const auto& front, const auto& back, double least = 4.5) {
                EXPECT_GE(contrast(front, back), least);
            };
            legible(theme.menuTextColor(), theme.menuBackgroundColor());
            legible(theme.menuIconColor(), theme.menuBackgroundColor(), 3);
            legible(theme.navigationBarTextColor(), theme.navigationBarBackgroundColor());
            legible(theme.navigationBarIconColor(), theme.navigationBarBackgroundColor(), 3);
            legible(theme.callMeButtonTextColor(), theme.callMeButtonBackgroundColor());
            for (const auto& text :
                 {theme.textColor(), std::optional(theme.buttonColor()), theme.formLabelTextColor(),
                  theme.formLabelRequiredIndicatorColor()})
                legible(text, ground);
            legible(theme.iconColor(), ground, 3);
            legible(theme.formEntryBorderColor(), ground, 3);
        }
    }
}

TEST_F(ResourcesTest, EveryDrawingHasItsPictureAndNoPictureIsLeftOver) {
    std::set<std::string> wanted;
    const std::regex size("width=\"([0-9]+)\" height=\"([0-9]+)\"");
    for (const auto& entry : fs::directory_iterator(drawings)) {
        if (entry.is_directory()) continue;
        const auto name = entry.path().stem().string() + ".png";
        wanted.insert(name);
        const auto image = kitImage(name);
        ASSERT_TRUE(image) << name;
        const auto text = textOf(entry.path());
        std::smatch stated;
        ASSERT_TRUE(std::regex_search(text, stated, size)) << name;
        EXPECT_EQ(std::to_string(image->width), stated[1]) << name;
        EXPECT_EQ(std::to_string(image->height), stated[2]) << name;
    }
    for (const auto& entry : fs::directory_iterator(drawings / "photo")) {
        const auto name = entry.path().stem().string() + ".jpg";
        wanted.insert(name);
        EXPECT_TRUE(kitImage(name)) << name;
    }
    for (const auto& entry : fs::directory_iterator(drawings / "moving")) {
        const auto name = entry.path().filename().string() + ".gif";
        wanted.insert(name);
        const auto moving = codec->decodeAnimation(toBytes(textOf(resources / name)));
        ASSERT_TRUE(moving) << name;
        const auto frames = std::distance(fs::directory_iterator(entry), fs::directory_iterator());
        EXPECT_EQ(moving->frames.size(), static_cast<std::size_t>(frames)) << name;
    }

    std::set<std::string> drawn;
    std::uintmax_t bytes = 0;
    for (const auto& entry : fs::directory_iterator(drawings.parent_path() / "images")) {
        drawn.insert(entry.path().filename().string());
        bytes += entry.file_size();
    }
    EXPECT_EQ(drawn, wanted);
    EXPECT_LT(bytes, 600U * 1024U);
}

TEST_F(ResourcesTest, EmoticonsHavePicturesAndNamesThatAChatLineFinds) {
    const auto list = Json::parse(textOf(resources / "Emoticons.json")).at("Emoticons");
    std::set<std::string> names;
    for (const auto& [file, entry] : list.items()) {
        EXPECT_TRUE(kitImage(file)) << file;
        for (const auto& name : entry.at("Equivalents")) {
            // Lines are searched for one word in brackets, which is then lower-cased.
            EXPECT_TRUE(std::regex_match(name.get<std::string>(), std::regex("\\([a-z0-9_]+\\)")));
            EXPECT_TRUE(names.insert(name).second) << name << " stands for two pictures";
        }
    }
    EXPECT_GE(list.size(), 16U);
}

TEST_F(ResourcesTest, BubblesStretchWithoutBendingTheirTails) {
    constexpr std::uint32_t top = 14;
    for (const auto& [name, left] :
         {std::pair("bubbleSomeone.png", 21U), {"bubbleMine.png", 15U}}) {
        const auto bubble = kitImage(name);
        ASSERT_TRUE(bubble) << name;
        const auto alpha = [&bubble](std::uint32_t x, std::uint32_t y) {
            return bubble->pixels[(std::size_t{y} * bubble->width + x) * 4 + 3];
        };
        // The repeated column and row look like their neighbours.
        for (std::uint32_t y = 0; y < bubble->height; ++y)
            EXPECT_EQ(alpha(left, y), alpha(left + 1, y)) << name << " row " << y;
        for (std::uint32_t x = 0; x < bubble->width; ++x)
            EXPECT_EQ(alpha(x, top), alpha(x, top + 1)) << name << " column " << x;
    }
}

}  // namespace
}  // namespace supportsdk::test
