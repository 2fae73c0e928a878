#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// A decoded picture: rows from the top, 4 bytes a pixel (red, green, blue, alpha), no padding.
struct Image {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::uint8_t> pixels;
};

using ImagePtr = std::shared_ptr<const Image>;

/// Decodes untrusted picture data. Any thread.
class ImageCodec {
 public:
    virtual ~ImageCodec() = default;

    /// The picture, or its first frame; null when the data is no picture, is damaged, or has more
    /// pixels than the codec allows.
    [[nodiscard]] virtual ImagePtr decode(std::span<const std::byte> data) = 0;
};

}  // namespace supportsdk
