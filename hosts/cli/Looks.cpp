#include "hosts/cli/Looks.h"

namespace supportsdk::host {

std::string textOf(const Color& color) {
    constexpr char digits[] = "0123456789abcdef";
    std::string text = "#";
    const auto add = [&](std::uint8_t channel) {
        text += digits[channel >> 4];
        text += digits[channel & 15];
    };
    add(color.red);
    add(color.green);
    add(color.blue);
    if (color.alpha != 255) add(color.alpha);
    return text;
}

void putColor(Json& fields, const char* key, const std::optional<Color>& color) {
    if (color) fields[key] = textOf(*color);
}

Json describeImage(const ImagePtr& image) {
    if (!image) return {{"found", false}};
    return {{"found", true}, {"width", image->width}, {"height", image->height}};
}

}  // namespace supportsdk::host
