#pragma once

#include "supportsdk/platform/Images.h"

namespace supportsdk {

/// Pictures through gdk-pixbuf: PNG, JPEG, GIF (first frame), BMP, and WebP where a loader for it
/// is installed. Other formats count as no picture: each further loader is a further parser that
/// strangers could feed. The orientation that EXIF data asks for is applied.
class PixbufImageCodec final : public ImageCodec {
 public:
    static constexpr std::size_t maximumEncodedBytes = std::size_t{64} * 1024 * 1024;
    static constexpr std::uint64_t maximumPixels = 40'000'000;

    [[nodiscard]] ImagePtr decode(std::span<const std::byte> data) override;
    [[nodiscard]] std::optional<AnimatedImage> decodeAnimation(
        std::span<const std::byte> data) override;
    [[nodiscard]] ImagePtr scaled(const Image& image, std::uint32_t width,
                                  std::uint32_t height) override;
    [[nodiscard]] std::optional<Bytes> encodeJpeg(const Image& image, double quality) override;
    [[nodiscard]] std::optional<Bytes> encodePng(const Image& image) override;
};

}  // namespace supportsdk
