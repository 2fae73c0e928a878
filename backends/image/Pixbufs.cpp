#include "backends/image/Pixbufs.h"

#include <cstring>
#include <new>

#include "backends/image/PixbufImageCodec.h"

namespace supportsdk {

namespace {

void copyRow(const guchar* from, std::uint8_t* to, std::size_t width, bool hasAlpha) {
    if (hasAlpha) {
        std::memcpy(to, from, width * 4);
        return;
    }
    for (std::size_t column = 0; column < width; ++column) {
        std::memcpy(to + column * 4, from + column * 3, 3);
        to[column * 4 + 3] = 0xFF;
    }
}

}  // namespace

ImagePtr toImage(GdkPixbuf* picture) {
    auto image = std::make_shared<Image>();
    image->width = static_cast<std::uint32_t>(gdk_pixbuf_get_width(picture));
    image->height = static_cast<std::uint32_t>(gdk_pixbuf_get_height(picture));
    const auto rowBytes = std::size_t{image->width} * 4;
    try {
        image->pixels.resize(rowBytes * image->height);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
    const auto stride = static_cast<std::size_t>(gdk_pixbuf_get_rowstride(picture));
    const bool hasAlpha = gdk_pixbuf_get_has_alpha(picture);
    const auto* rows = gdk_pixbuf_read_pixels(picture);
    for (std::size_t row = 0; row < image->height; ++row)
        copyRow(rows + row * stride, &image->pixels[row * rowBytes], image->width, hasAlpha);
    return image;
}

Pixbuf viewOf(const Image& image) {
    const auto pixels = std::uint64_t{image.width} * image.height;
    if (pixels == 0 || pixels > PixbufImageCodec::maximumPixels ||
        image.pixels.size() != pixels * 4)
        return nullptr;
    return Pixbuf(gdk_pixbuf_new_from_data(
        image.pixels.data(), GDK_COLORSPACE_RGB, TRUE, 8, static_cast<int>(image.width),
        static_cast<int>(image.height), static_cast<int>(image.width * 4), nullptr, nullptr));
}

}  // namespace supportsdk
