#include "tests/backends/image/Pictures.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

namespace supportsdk::test {

using namespace std::string_literals;

std::string encoded(const char* format, const char* option, const char* value) {
    const int channels = std::string_view(format) == "png" ? 4 : 3;
    const std::vector<guchar> source = {255, 0,   0,   255, 0, 255, 0, 255, 0,   0, 255, 255,
                                        255, 255, 255, 255, 0, 0,   0, 255, 255, 0, 0,   128};
    std::vector<guchar> pixels;
    for (std::size_t byte = 0; byte < source.size(); ++byte) {
        if (channels == 4 || byte % 4 != 3) pixels.push_back(source[byte]);
    }
    auto* picture = gdk_pixbuf_new_from_data(pixels.data(), GDK_COLORSPACE_RGB, channels == 4, 8, 3,
                                             2, 3 * channels, nullptr, nullptr);
    gchar* bytes = nullptr;
    gsize size = 0;
    gdk_pixbuf_save_to_buffer(picture, &bytes, &size, format, nullptr, option, value, nullptr);
    std::string result(bytes, size);
    g_free(bytes);
    g_object_unref(picture);
    return result;
}

std::string gif(std::uint16_t width, std::uint16_t height, const std::vector<GifFrame>& frames) {
    const auto word = [](std::uint16_t value) {
        return std::string{static_cast<char>(value & 0xFF), static_cast<char>(value >> 8)};
    };
    auto file = "GIF89a" + word(width) + word(height) + "\x80\0\0"s + "\xff\0\0\0\0\0"s +
                "!\xff\x0bNETSCAPE2.0\x03\x01\0\0\0"s;
    for (const auto& frame : frames) {
        file += "!\xf9\x04\0"s + word(frame.delay) + "\0\0"s;
        file += "," + word(frame.left) + word(0) + word(frame.side) + word(frame.side) + "\0"s;
        // Three codes of three bits: clear, the pixel, end.
        file += "\x02\x02"s + static_cast<char>(0x44 | frame.color << 3) + "\x01\0"s;
    }
    return file + ";";
}

}  // namespace supportsdk::test
