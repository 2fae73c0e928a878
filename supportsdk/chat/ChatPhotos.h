#pragma once

#include <cstdint>
#include <functional>

#include "supportsdk/platform/Platform.h"

namespace supportsdk {

/// In pixels: enough to read a label in a photo, and few enough for a slow uplink.
inline constexpr std::uint32_t longestPhotoSide = 2048;

/// The picture, no side of it longer than longestPhotoSide, its proportions kept. Pictures have no
/// orientation of their own here, because the codec has turned them upright. Null without pixels.
/// Any thread.
[[nodiscard]] ImagePtr scaleAndRotateImage(ImageCodec& codec, const ImagePtr& image);

/// Reads a chosen picture and scales it, in the background. `completion` runs once, on the main
/// thread and never inside this call, with null when the picture cannot be read. Main thread.
void preparePhoto(const Platform& platform, PhotoItem item,
                  std::function<void(ImagePtr)> completion);

}  // namespace supportsdk
