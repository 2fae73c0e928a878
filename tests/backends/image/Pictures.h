#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>

#include "backends/image/PixbufImageCodec.h"

namespace supportsdk::test {

using namespace std::string_literals;

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

/// A picture of 3 by 2 in `format`: red, green, blue over white, black, red.
inline std::string encoded(const char* format) {
    const guchar pixels[] = {255, 0,   0,   0, 255, 0, 0,   0, 255, 0, 0, 0,
                             255, 255, 255, 0, 0,   0, 255, 0, 0,   0, 0, 0};
    auto* picture =
        gdk_pixbuf_new_from_data(pixels, GDK_COLORSPACE_RGB, FALSE, 8, 3, 2, 12, nullptr, nullptr);
    gchar* bytes = nullptr;
    gsize size = 0;
    gdk_pixbuf_save_to_buffer(picture, &bytes, &size, format, nullptr, nullptr);
    std::string result(bytes, size);
    g_free(bytes);
    g_object_unref(picture);
    return result;
}

struct GifFrame {
    std::uint16_t left = 0;
    std::uint16_t side = 1;
    std::uint16_t hundredths = 0;
    /// Of its first pixel: 0 is red, 1 is black. The others are transparent.
    int color = 0;
};

/// A GIF that repeats for ever.
inline std::string gif(std::uint16_t width, std::uint16_t height,
                       const std::vector<GifFrame>& frames) {
    const auto word = [](std::uint16_t value) {
        return std::string{static_cast<char>(value & 0xFF), static_cast<char>(value >> 8)};
    };
    auto file = "GIF89a" + word(width) + word(height) + "\x80\0\0"s + "\xff\0\0\0\0\0"s +
                "!\xff\x0bNETSCAPE2.0\x03\x01\0\0\0"s;
    for (const auto& frame : frames) {
        file += "!\xf9\x04\0"s + word(frame.hundredths) + "\0\0"s;
        file += "," + word(frame.left) + word(0) + word(frame.side) + word(frame.side) + "\0"s;
        // Three codes of three bits: clear, the pixel, end.
        file += "\x02\x02"s + static_cast<char>(0x44 | frame.color << 3) + "\x01\0"s;
    }
    return file + ";";
}

}  // namespace supportsdk::test
