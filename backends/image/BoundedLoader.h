#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "backends/image/Pixbufs.h"

namespace supportsdk {

/// A gdk-pixbuf loader that ends as soon as a picture tells a size beyond what is allowed, before
/// it allocates the pixels.
class BoundedLoader {
 public:
    /// `format` as gdk-pixbuf names it. `passes` is how often the picture is gone over: a picture
    /// that is small enough may still cost minutes.
    BoundedLoader(const char* format, std::uint64_t passes);
    ~BoundedLoader();
    BoundedLoader(const BoundedLoader&) = delete;
    BoundedLoader& operator=(const BoundedLoader&) = delete;

    /// Feeds `data` and then `tail`; false when they are no picture, or too large a one.
    bool load(std::string_view data, std::string_view tail = {});

    /// What was loaded, upright; null when nothing was.
    [[nodiscard]] Pixbuf picture() const;
    /// Null when nothing was loaded. Lives as long as this object.
    [[nodiscard]] GdkPixbufAnimation* animation() const;

 private:
    static void checkSize(GdkPixbufLoader* loader, int width, int height, gpointer self);
    bool write(std::string_view data);

    std::unique_ptr<GdkPixbufLoader, GObjectUnref> loader_;
    const std::uint64_t passes_;
    bool isRefused_ = false;
    bool isOpen_ = false;
};

}  // namespace supportsdk
