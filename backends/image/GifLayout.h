#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace supportsdk {

/// Where the frames of a GIF lie and for how long each is shown, read from its blocks without
/// decoding a pixel.
struct GifLayout {
    struct Frame {
        /// In the file: behind the frame's last byte.
        std::size_t end = 0;
        /// As the file has it.
        std::chrono::milliseconds delay{0};
    };

    std::uint32_t width = 0;
    std::uint32_t height = 0;
    /// Sound ones only: one that is cut off, empty or reaches out of the screen does not count, nor
    /// what follows it.
    std::vector<Frame> frames;

    /// Reads the first `maximumFrames` frames. Nothing when `data` is no GIF, or has no frame or no
    /// area.
    static std::optional<GifLayout> read(std::string_view data, std::size_t maximumFrames);
};

}  // namespace supportsdk
