#include <cmath>

#include "backends/image/PixbufImageCodec.h"
#include "backends/image/Pixbufs.h"

namespace supportsdk {

namespace {

std::optional<Bytes> save(GdkPixbuf* picture, const char* format, const char* option,
                          const char* value) {
    gchar* buffer = nullptr;
    gsize length = 0;
    if (!gdk_pixbuf_save_to_buffer(picture, &buffer, &length, format, nullptr, option, value,
                                   nullptr))
        return std::nullopt;
    const std::unique_ptr<gchar, decltype(&g_free)> owner(buffer, g_free);
    return toBytes({buffer, length});
}

}  // namespace

ImagePtr PixbufImageCodec::scaled(const Image& image, std::uint32_t width, std::uint32_t height) {
    const auto picture = viewOf(image);
    const auto pixels = std::uint64_t{width} * height;
    if (!picture || pixels == 0 || pixels > maximumPixels) return nullptr;
    const Pixbuf result(gdk_pixbuf_scale_simple(picture.get(), static_cast<int>(width),
                                                static_cast<int>(height), GDK_INTERP_BILINEAR));
    return result ? toImage(result.get()) : nullptr;
}

std::optional<Bytes> PixbufImageCodec::encodeJpeg(const Image& image, double quality) {
    const auto picture = viewOf(image);
    if (!picture) return std::nullopt;
    // JPEG has no transparency, and the saver would drop the channel and show what lies below it.
    const Pixbuf onWhite(gdk_pixbuf_composite_color_simple(
        picture.get(), gdk_pixbuf_get_width(picture.get()), gdk_pixbuf_get_height(picture.get()),
        GDK_INTERP_NEAREST, 255, 64, 0xFFFFFF, 0xFFFFFF));
    if (!onWhite) return std::nullopt;
    const double bounded = quality > 0 ? std::min(quality, 1.0) : 0;  // what is no number is 0
    const auto percent = std::to_string(std::lround(bounded * 100));
    return save(onWhite.get(), "jpeg", "quality", percent.c_str());
}

std::optional<Bytes> PixbufImageCodec::encodePng(const Image& image) {
    const auto picture = viewOf(image);
    return picture ? save(picture.get(), "png", nullptr, nullptr) : std::nullopt;
}

}  // namespace supportsdk
