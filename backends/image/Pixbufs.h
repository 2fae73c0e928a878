#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <memory>

#include "supportsdk/platform/Images.h"

namespace supportsdk {

struct GObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
using Pixbuf = std::unique_ptr<GdkPixbuf, GObjectUnref>;

/// Null when there is no memory for it.
ImagePtr toImage(GdkPixbuf* picture);

/// A view on the picture's own bytes; null when it has no pixels, not as many as its size says, or
/// too many.
Pixbuf viewOf(const Image& image);

}  // namespace supportsdk
