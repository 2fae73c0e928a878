#include "backends/image/BoundedLoader.h"

#include "backends/image/PixbufImageCodec.h"

namespace supportsdk {

BoundedLoader::BoundedLoader(const char* format, std::uint64_t passes)
    : loader_(gdk_pixbuf_loader_new_with_type(format, nullptr)), passes_(passes) {
    if (!loader_) return;
    isOpen_ = true;
    g_signal_connect(loader_.get(), "size-prepared", G_CALLBACK(checkSize), this);
}

BoundedLoader::~BoundedLoader() {
    // A loader must be closed in any case.
    if (isOpen_) gdk_pixbuf_loader_close(loader_.get(), nullptr);
}

bool BoundedLoader::load(std::string_view data, std::string_view tail) {
    if (!isOpen_) return false;
    const bool isWritten = write(data) && write(tail);
    isOpen_ = false;
    const bool isWhole = gdk_pixbuf_loader_close(loader_.get(), nullptr);
    return isWritten && isWhole && !isRefused_;
}

Pixbuf BoundedLoader::picture() const {
    auto* picture = gdk_pixbuf_loader_get_pixbuf(loader_.get());
    return Pixbuf(picture ? gdk_pixbuf_apply_embedded_orientation(picture) : nullptr);
}

GdkPixbufAnimation* BoundedLoader::animation() const {
    return gdk_pixbuf_loader_get_animation(loader_.get());
}

bool BoundedLoader::write(std::string_view data) {
    return data.empty() ||
           gdk_pixbuf_loader_write(loader_.get(), reinterpret_cast<const guchar*>(data.data()),
                                   data.size(), nullptr);
}

/// A size of zero makes the loader fail.
void BoundedLoader::checkSize(GdkPixbufLoader* loader, int width, int height, gpointer self) {
    auto& bounded = *static_cast<BoundedLoader*>(self);
    if (width > 0 && height > 0) {
        const auto pixels = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
        if (pixels <= PixbufImageCodec::maximumPixels &&
            pixels * bounded.passes_ <= PixbufImageCodec::maximumPixelPasses)
            return;
    }
    bounded.isRefused_ = true;
    gdk_pixbuf_loader_set_size(loader, 0, 0);
}

}  // namespace supportsdk
