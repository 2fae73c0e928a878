#include "backends/image/GifLayout.h"

#include <utility>

namespace supportsdk {

namespace {

constexpr char extensionMark = '!';
constexpr char frameMark = ',';
constexpr char endMark = ';';
constexpr char graphicControlLabel = '\xf9';

/// Reads from the front; everything is empty or 0 once the data has run out.
class GifReader {
 public:
    explicit GifReader(std::string_view data) : data_(data) {}

    std::string_view take(std::size_t count) {
        const auto taken = data_.substr(at_, count);
        at_ += taken.size();
        if (taken.size() == count) return taken;
        isCut_ = true;
        return {};
    }

    std::uint8_t byte() {
        const auto taken = take(1);
        return taken.empty() ? 0 : static_cast<std::uint8_t>(taken[0]);
    }

    std::uint16_t word() {
        const unsigned low = byte();
        return static_cast<std::uint16_t>(low | unsigned{byte()} << 8);
    }

    /// A colour table, where these flags announce one.
    void skipColors(std::uint8_t flags) {
        if (flags & 0x80) take(std::size_t{3} << ((flags & 7) + 1));
    }

    void skipSubBlocks() {
        while (const auto size = byte()) take(size);
    }

    [[nodiscard]] bool isCut() const { return isCut_; }
    [[nodiscard]] std::size_t position() const { return at_; }

 private:
    std::string_view data_;
    std::size_t at_ = 0;
    bool isCut_ = false;
};

/// The delay of the frame that follows, when this extension is the one that tells it.
std::optional<std::chrono::milliseconds> readExtension(GifReader& reader) {
    std::optional<std::chrono::milliseconds> delay;
    if (static_cast<char>(reader.byte()) == graphicControlLabel) {
        const auto size = reader.byte();
        if (size == 0) return delay;
        if (size == 4) {
            reader.byte();
            delay = std::chrono::milliseconds{reader.word() * 10};
            reader.byte();
        } else {
            reader.take(size);
        }
    }
    reader.skipSubBlocks();
    return delay;
}

/// Goes over a frame; false when it is cut off, empty, or reaches out of the screen.
bool readFrame(GifReader& reader, const GifLayout& layout) {
    const std::uint32_t left = reader.word();
    const std::uint32_t top = reader.word();
    const std::uint32_t width = reader.word();
    const std::uint32_t height = reader.word();
    reader.skipColors(reader.byte());
    reader.byte();
    reader.skipSubBlocks();
    return !reader.isCut() && width > 0 && height > 0 && left + width <= layout.width &&
           top + height <= layout.height;
}

}  // namespace

/// CompuServe's GIF 89a, sections 17 to 27.
std::optional<GifLayout> GifLayout::read(std::string_view data, std::size_t maximumFrames) {
    GifReader reader(data);
    const auto signature = reader.take(6);
    if (signature != "GIF87a" && signature != "GIF89a") return std::nullopt;
    GifLayout layout;
    layout.width = reader.word();
    layout.height = reader.word();
    if (layout.width == 0 || layout.height == 0) return std::nullopt;
    const auto flags = reader.byte();
    reader.take(2);
    reader.skipColors(flags);

    std::chrono::milliseconds delay{0};
    while (!reader.isCut() && layout.frames.size() < maximumFrames) {
        const auto mark = static_cast<char>(reader.byte());
        if (mark == endMark) break;
        if (mark == extensionMark) delay = readExtension(reader).value_or(delay);
        if (mark != frameMark) continue;
        if (!readFrame(reader, layout)) break;
        layout.frames.push_back(
            {reader.position(), std::exchange(delay, std::chrono::milliseconds{0})});
    }
    return layout.frames.empty() ? std::nullopt : std::optional(std::move(layout));
}

}  // namespace supportsdk
