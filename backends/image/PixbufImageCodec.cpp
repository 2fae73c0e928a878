#include "backends/image/PixbufImageCodec.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string_view>

namespace supportsdk {

namespace {

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
using Loader = std::unique_ptr<GdkPixbufLoader, Unref>;
using Pixbuf = std::unique_ptr<GdkPixbuf, Unref>;

/// The loader's name for the format that `text` begins as; null for all others.
const char* formatOf(std::string_view text) {
    using namespace std::string_view_literals;
    if (text.starts_with("\x89PNG\r\n\x1a\n"sv)) return "png";
    if (text.starts_with("\xff\xd8\xff"sv)) return "jpeg";
    if (text.starts_with("GIF87a"sv) || text.starts_with("GIF89a"sv)) return "gif";
    if (text.starts_with("BM"sv)) return "bmp";
    if (text.starts_with("RIFF"sv) && text.substr(0, 12).ends_with("WEBP"sv)) return "webp";
    return nullptr;
}

/// Whether the mark that ends a picture is there. The loaders for these two take one that is cut
/// off for a whole one and leave the rest blank.
bool hasEnd(std::string_view format, std::string_view text) {
    if (format == "png") return text.find("IEND\xae\x42\x60\x82") != std::string_view::npos;
    if (format == "jpeg") return text.find("\xff\xd9") != std::string_view::npos;
    return true;
}

/// Tells the loader to stop before it allocates: a size of zero makes it fail.
void refuseHugeSize(GdkPixbufLoader* loader, int width, int height, gpointer refused) {
    if (static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height) <=
        PixbufImageCodec::maximumPixels)
        return;
    *static_cast<bool*>(refused) = true;
    gdk_pixbuf_loader_set_size(loader, 0, 0);
}

Pixbuf load(const char* format, std::string_view text) {
    const Loader loader(gdk_pixbuf_loader_new_with_type(format, nullptr));
    if (!loader) return nullptr;
    bool refused = false;
    g_signal_connect(loader.get(), "size-prepared", G_CALLBACK(refuseHugeSize), &refused);

    const bool written = gdk_pixbuf_loader_write(
        loader.get(), reinterpret_cast<const guchar*>(text.data()), text.size(), nullptr);
    // A loader must be closed in any case.
    const bool whole = gdk_pixbuf_loader_close(loader.get(), nullptr);
    if (!written || !whole || refused) return nullptr;
    auto* picture = gdk_pixbuf_loader_get_pixbuf(loader.get());
    return Pixbuf(picture ? gdk_pixbuf_apply_embedded_orientation(picture) : nullptr);
}

ImagePtr toImage(GdkPixbuf* picture) {
    const Pixbuf withAlpha(gdk_pixbuf_add_alpha(picture, FALSE, 0, 0, 0));
    if (!withAlpha) return nullptr;
    auto image = std::make_shared<Image>();
    image->width = static_cast<std::uint32_t>(gdk_pixbuf_get_width(withAlpha.get()));
    image->height = static_cast<std::uint32_t>(gdk_pixbuf_get_height(withAlpha.get()));
    const auto rowBytes = std::size_t{image->width} * 4;
    const auto stride = static_cast<std::size_t>(gdk_pixbuf_get_rowstride(withAlpha.get()));
    const auto* rows = gdk_pixbuf_read_pixels(withAlpha.get());
    image->pixels.resize(rowBytes * image->height);
    for (std::size_t row = 0; row < image->height; ++row)
        std::memcpy(&image->pixels[row * rowBytes], rows + row * stride, rowBytes);
    return image;
}

/// A view on the picture's own bytes.
Pixbuf viewOf(const Image& image) {
    const auto pixels = std::uint64_t{image.width} * image.height;
    if (pixels == 0 || pixels > PixbufImageCodec::maximumPixels ||
        image.pixels.size() != pixels * 4)
        return nullptr;
    return Pixbuf(gdk_pixbuf_new_from_data(
        image.pixels.data(), GDK_COLORSPACE_RGB, TRUE, 8, static_cast<int>(image.width),
        static_cast<int>(image.height), static_cast<int>(image.width * 4), nullptr, nullptr));
}

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

std::optional<AnimatedImage> PixbufImageCodec::decodeAnimation(std::span<const std::byte> data) {
    const auto image = decode(data);
    if (!image) return std::nullopt;
    return AnimatedImage{{{image, std::chrono::milliseconds{0}}}};
}

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
    const auto percent = std::to_string(std::lround(std::clamp(quality, 0.0, 1.0) * 100));
    return save(onWhite.get(), "jpeg", "quality", percent.c_str());
}

std::optional<Bytes> PixbufImageCodec::encodePng(const Image& image) {
    const auto picture = viewOf(image);
    return picture ? save(picture.get(), "png", nullptr, nullptr) : std::nullopt;
}

ImagePtr PixbufImageCodec::decode(std::span<const std::byte> data) {
    if (data.size() > maximumEncodedBytes) return nullptr;
    const std::string_view text(reinterpret_cast<const char*>(data.data()), data.size());
    const char* format = formatOf(text);
    if (!format || !hasEnd(format, text)) return nullptr;
    const auto picture = load(format, text);
    return picture ? toImage(picture.get()) : nullptr;
}

}  // namespace supportsdk
