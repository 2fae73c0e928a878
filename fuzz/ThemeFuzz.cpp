#include <cmath>

#include "fuzz/Fuzzing.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/theme/Appearance.h"
#include "supportsdk/theme/ThemeImages.h"

using namespace supportsdk;
using fuzz::require;

namespace {

/// Has a picture of every name that begins with a letter, and counts how often it is asked.
struct LetterBundle : Bundle {
    std::optional<std::string> info(const std::string&) const override { return std::nullopt; }
    std::optional<std::filesystem::path> path(const std::string&,
                                              const std::string&) const override {
        return std::nullopt;
    }
    std::optional<Bytes> data(const std::string& name, const std::string&) const override {
        ++asked;
        const char first = name.empty() ? '0' : name.front();
        return first >= 'a' && first <= 'z' ? std::optional(toBytes("picture")) : std::nullopt;
    }
    mutable std::size_t asked = 0;
};

struct OnePixelCodec : ImageCodec {
    ImagePtr decode(std::span<const std::byte>) override { return pixel; }
    std::optional<AnimatedImage> decodeAnimation(std::span<const std::byte>) override {
        return std::nullopt;
    }
    ImagePtr scaled(const Image&, std::uint32_t, std::uint32_t) override { return nullptr; }
    std::optional<Bytes> encodeJpeg(const Image&, double) override { return std::nullopt; }
    std::optional<Bytes> encodePng(const Image&) override { return std::nullopt; }
    const ImagePtr pixel = std::make_shared<Image>(Image{1, 1, {0, 0, 0, 255}});
};

struct SwitchedTraits : Traits {
    bool darkMode() const override { return dark; }
    Registration observe(std::function<void()>) override { return {}; }
    bool dark = false;
};

struct SilentGlobalAppearance : GlobalAppearance {
    void setNavigationBarTranslucent(bool) override {}
    void setNavigationBarTintColor(const std::optional<Color>&) override {}
    void setNavigationBarBarTintColor(const std::optional<Color>&) override {}
    void setControlTintColor(const std::optional<Color>&) override {}
};

/// What a screen reads, in the look of the moment. None of it is foreign to the theme's types.
void readAll(const Appearance& theme) {
    for (const double size :
         {theme.menuTextSize(), theme.menuBorderWidth(), theme.menuPadding(), theme.menuSpacing(),
          theme.formLabelTextSize(), theme.formEntryTextSize(), theme.formEntryBorderWidth(),
          theme.formSpacing()})
        require(std::isfinite(size));
    require(theme.chatIconColor().value_or(theme.iconColor()).alpha == 255);
    require(theme.chatActionButtonSelectedTextColor().alpha == 255);
    require(theme.menuTextColor().value_or(theme.buttonColor()).alpha == 255);
    require(theme.formEntryTextColor().value_or(theme.lineColor()).alpha == 255);
    (void)theme.menuHeading(), (void)theme.chatMenuText(), (void)theme.formSaveButtonText();
}

}  // namespace

/// The input is a theme's JSON text. It is applied twice, in either look, so that the second
/// application meets the leftovers of the first.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto platform = std::make_shared<Platform>();
    const auto bundle = std::make_shared<LetterBundle>();
    const auto traits = std::make_shared<SwitchedTraits>();
    platform->kitBundle = platform->mainBundle = bundle;
    platform->images = std::make_shared<OnePixelCodec>();
    platform->traits = traits;
    platform->globalAppearance = std::make_shared<SilentGlobalAppearance>();

    Appearance theme(platform);
    for (const bool dark : {false, true}) {
        traits->dark = dark;
        bundle->asked = 0;
        require(theme.configureWithJSON(text).has_value() == !parseJson(text).has_value());
        require(bundle->asked <= 2 * ThemeImages::maximumNames);
        readAll(theme);
    }
    (void)colorWithHexString(text);
    return 0;
}
