#pragma once

#include "supportsdk/platform/Images.h"

namespace supportsdk {

/// Pictures through gdk-pixbuf: PNG, JPEG, GIF, BMP, and WebP where a loader for it is installed.
/// Other formats count as no picture: each further loader is a further parser that strangers could
/// feed. Only a GIF has frames; one that is damaged ends with its last sound frame, and a frame
/// that is to be shown for less than 20 ms is shown for 100 ms, as browsers do. The orientation
/// that EXIF data asks for is applied.
class PixbufImageCodec final : public ImageCodec {
 public:
    static constexpr std::size_t maximumEncodedBytes = std::size_t{64} * 1024 * 1024;
    static constexpr std::uint64_t maximumPixels = 40'000'000;
    /// Pixels times scans: a JPEG may go over the whole picture again for every few bytes.
    static constexpr std::uint64_t maximumPixelPasses = 10 * maximumPixels;
    static constexpr std::size_t maximumFrames = 1'000;

    [[nodiscard]] ImagePtr decode(std::span<const std::byte> data) override;
    [[nodiscard]] std::optional<AnimatedImage> decodeAnimation(
        std::span<const std::byte> data) override;
    [[nodiscard]] ImagePtr scaled(const Image& image, std::uint32_t width,
                                  std::uint32_t height) override;
    [[nodiscard]] std::optional<Bytes> encodeJpeg(const Image& image, double quality) override;
    [[nodiscard]] std::optional<Bytes> encodePng(const Image& image) override;
};

}  // namespace supportsdk
