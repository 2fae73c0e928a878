#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// A decoded picture: rows from the top, 4 bytes a pixel (red, green, blue, alpha; not
/// premultiplied), no padding.
struct Image {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::uint8_t> pixels;
};

using ImagePtr = std::shared_ptr<const Image>;

/// A moving picture: at least one frame, all of one size.
struct AnimatedImage {
    struct Frame {
        ImagePtr image;
        std::chrono::milliseconds duration{0};
    };
    std::vector<Frame> frames;
};

/// Reads untrusted picture data and writes pictures. Any thread.
class ImageCodec {
 public:
    virtual ~ImageCodec() = default;

    /// The picture, or its first frame, upright; null when the data is no picture, is damaged, or
    /// has more pixels than the codec allows.
    [[nodiscard]] virtual ImagePtr decode(std::span<const std::byte> data) = 0;

    /// All frames, of which a still picture has one. Nothing on the same grounds as decode(), the
    /// pixels of all frames counted together.
    [[nodiscard]] virtual std::optional<AnimatedImage> decodeAnimation(
        std::span<const std::byte> data) = 0;

    /// The picture in another size. Null when a side of either is 0 or the result would have more
    /// pixels than the codec allows.
    [[nodiscard]] virtual ImagePtr scaled(const Image& image, std::uint32_t width,
                                          std::uint32_t height) = 0;

    /// JPEG (ISO/IEC 10918-1) on a white ground; `quality` from 0 to 1, bounded. Nothing for a
    /// picture without pixels.
    [[nodiscard]] virtual std::optional<Bytes> encodeJpeg(const Image& image, double quality) = 0;

    /// PNG (ISO/IEC 15948). Nothing for a picture without pixels.
    [[nodiscard]] virtual std::optional<Bytes> encodePng(const Image& image) = 0;
};

}  // namespace supportsdk
