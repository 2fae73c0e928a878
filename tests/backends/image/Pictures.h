#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "backends/image/PixbufImageCodec.h"

namespace supportsdk::test {

/// A picture of 3 by 2 in `format`: red, green, blue over white, black, half-transparent red.
std::string encoded(const char* format, const char* option = nullptr, const char* value = nullptr);

struct GifFrame {
    std::uint16_t left = 0;
    std::uint16_t side = 1;
    /// In hundredths of a second.
    std::uint16_t delay = 0;
    /// Of its first pixel: 0 is red, 1 is black. The others are transparent.
    int color = 0;
};

/// A GIF that repeats for ever.
std::string gif(std::uint16_t width, std::uint16_t height, const std::vector<GifFrame>& frames);

inline std::span<const std::byte> asBytes(std::string_view text) {
    return std::as_bytes(std::span(text));
}

inline ImagePtr decode(std::string_view text) {
    return PixbufImageCodec().decode(asBytes(text));
}

inline std::vector<int> pixel(const Image& image, std::size_t index) {
    const auto* first = &image.pixels.at(index * 4);
    return {first[0], first[1], first[2], first[3]};
}

}  // namespace supportsdk::test
