#pragma once

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Images.h"

namespace supportsdk {

/// The circle in the largest centred square of `image`: transparent around it, with a smooth edge.
/// Null when the picture has no pixels, or not as many as its size says. Any thread.
[[nodiscard]] SUPPORTSDK_API ImagePtr roundImage(const Image& image);

}  // namespace supportsdk
