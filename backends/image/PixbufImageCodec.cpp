#include "backends/image/PixbufImageCodec.h"

#include "backends/image/BoundedLoader.h"
#include "backends/image/GifLayout.h"
#include "backends/image/PictureFormat.h"

namespace supportsdk {

namespace {

constexpr std::string_view gifEnd = ";";

std::string_view asText(std::span<const std::byte> data) {
    return {reinterpret_cast<const char*>(data.data()), data.size()};
}

std::chrono::milliseconds shownFor(std::chrono::milliseconds delay) {
    using namespace std::chrono_literals;
    return delay < 20ms ? 100ms : delay;
}

/// The loader would read all frames, however many, to show the first one.
ImagePtr firstFrame(std::string_view data) {
    const auto layout = GifLayout::read(data, 1);
    BoundedLoader loader("gif", 1);
    if (!layout || !loader.load(data.substr(0, layout->frames[0].end), gifEnd)) return nullptr;
    const auto picture = loader.picture();
    return picture ? toImage(picture.get()) : nullptr;
}

// The type for points in time that gdk-pixbuf's interface has is deprecated by GLib.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS

/// Plays the animation once, in its own time: it repeats without telling where it begins anew, so
/// that the number of frames has to be known.
std::optional<AnimatedImage> play(GdkPixbufAnimation* animation,
                                  const std::vector<GifLayout::Frame>& frames) {
    AnimatedImage result;
    GTimeVal now{0, 0};
    gint64 milliseconds = 0;
    const std::unique_ptr<GdkPixbufAnimationIter, GObjectUnref> position(
        gdk_pixbuf_animation_get_iter(animation, &now));
    for (const auto& frame : frames) {
        auto* picture = gdk_pixbuf_animation_iter_get_pixbuf(position.get());
        auto image = picture ? toImage(picture) : nullptr;
        if (!image) return std::nullopt;
        result.frames.push_back({std::move(image), shownFor(frame.delay)});
        milliseconds += std::max(gdk_pixbuf_animation_iter_get_delay_time(position.get()), 0);
        now.tv_sec = static_cast<glong>(milliseconds / 1000);
        now.tv_usec = static_cast<glong>(milliseconds % 1000 * 1000);
        gdk_pixbuf_animation_iter_advance(position.get(), &now);
    }
    return result;
}

G_GNUC_END_IGNORE_DEPRECATIONS

std::optional<AnimatedImage> decodeFrames(std::string_view data, const GifLayout& layout) {
    const auto count = layout.frames.size();
    const auto pixels = std::uint64_t{layout.width} * layout.height * count;
    if (count > PixbufImageCodec::maximumFrames || pixels > PixbufImageCodec::maximumPixels)
        return std::nullopt;
    BoundedLoader loader("gif", 1);
    if (!loader.load(data.substr(0, layout.frames.back().end), gifEnd)) return std::nullopt;
    auto* animation = loader.animation();
    return animation ? play(animation, layout.frames) : std::nullopt;
}

}  // namespace

ImagePtr PixbufImageCodec::decode(std::span<const std::byte> data) {
    if (data.size() > maximumEncodedBytes) return nullptr;
    const auto text = asText(data);
    const char* format = pictureFormat(text);
    if (!format || !hasPictureEnd(format, text)) return nullptr;
    if (format == std::string_view("gif")) return firstFrame(text);
    // Its loaders differ in when they tell the size.
    if (format == std::string_view("webp") && webpPixels(text) > maximumPixels) return nullptr;
    BoundedLoader loader(format, picturePasses(format, text));
    if (!loader.load(text)) return nullptr;
    const auto picture = loader.picture();
    return picture ? toImage(picture.get()) : nullptr;
}

std::optional<AnimatedImage> PixbufImageCodec::decodeAnimation(std::span<const std::byte> data) {
    if (data.size() > maximumEncodedBytes) return std::nullopt;
    const auto layout = GifLayout::read(asText(data), maximumFrames + 1);
    if (layout && layout->frames.size() > 1) return decodeFrames(asText(data), *layout);
    auto image = decode(data);
    if (!image) return std::nullopt;
    return AnimatedImage{{{std::move(image), std::chrono::milliseconds{0}}}};
}

}  // namespace supportsdk
