#pragma once

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Images.h"

namespace supportsdk {

/// The circle in the largest centred square of `image`: transparent around it, with a smooth edge.
/// Null when the picture has no pixels, or not as many as its size says. Any thread.
[[nodiscard]] SUPPORTSDK_API ImagePtr roundImage(const Image& image);

/// Avatars are drawn at 50 points; more pixels than these on a side are not kept.
inline constexpr std::uint32_t maximumAvatarSide = 100;

/// roundImage() of at most that size. Any thread.
[[nodiscard]] SUPPORTSDK_API ImagePtr avatarFromImage(ImageCodec& images, const Image& image);

}  // namespace supportsdk
