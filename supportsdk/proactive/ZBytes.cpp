#include "supportsdk/proactive/ZBytes.h"

#include <algorithm>
#include <new>
#include <utility>

#include "supportsdk/proactive/GzipData.h"

namespace supportsdk {

namespace {

constexpr std::size_t outputBytes = 16384;

/// What zlib writes to: a length that grows evenly, since what it makes of data at level 0 depends
/// on its room, over a vector whose capacity doubles, so that copying stays in proportion.
class GrowingOutput {
 public:
    explicit GrowingOutput(std::size_t length, std::size_t capacity = 0) {
        bytes_.reserve(capacity);
        bytes_.resize(length);
    }

    void grow(std::size_t by) { bytes_.resize(bytes_.size() + by); }
    [[nodiscard]] std::size_t length() const { return bytes_.size(); }
    [[nodiscard]] bool isFull() const { return used_ == bytes_.size(); }

    ZStream::State step(ZStream& stream, std::span<const std::byte>& input, ZStream::Flush flush) {
        auto room = std::span(bytes_).subspan(used_);
        const auto state = stream.step(input, room, flush);
        used_ = bytes_.size() - room.size();
        return state;
    }

    Bytes takeUsed() {
        bytes_.resize(used_);
        return std::move(bytes_);
    }
    Bytes takeWhole() { return std::move(bytes_); }

 private:
    Bytes bytes_;
    std::size_t used_ = 0;
};

std::optional<InflatedBytes> inflateAll(ZStream& stream, std::span<const std::byte> input,
                                        std::size_t length) {
    const auto growth = std::max<std::size_t>(input.size() / 2, 1);
    GrowingOutput output(std::min(length, maximumInflatedBytes),
                         std::min(input.size() * 2, maximumInflatedBytes));
    while (true) {
        if (output.isFull()) {
            const auto left = maximumInflatedBytes - output.length();
            if (left == 0) return std::nullopt;
            output.grow(std::min(growth, left));
        }
        const auto state = output.step(stream, input, ZStream::Flush::sync);
        if (state == ZStream::State::ended) return InflatedBytes{output.takeUsed(), true};
        // Room is left, so the input ended before the stream did.
        if (state == ZStream::State::failed || !output.isFull()) break;
    }
    return InflatedBytes{output.takeWhole(), false};
}

}  // namespace

std::optional<Bytes> deflateBytes(std::span<const std::byte> data, ZFormat format, int level) try {
    auto stream = ZStream::deflating(format, level);
    if (!stream) return std::nullopt;
    GrowingOutput output(outputBytes);
    while (true) {
        const auto state = output.step(*stream, data, ZStream::Flush::finish);
        if (state == ZStream::State::ended) return output.takeUsed();
        if (state == ZStream::State::failed) return std::nullopt;
        output.grow(outputBytes);
    }
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

std::optional<InflatedBytes> inflateBytes(std::span<const std::byte> data, ZFormat format,
                                          std::size_t length) try {
    auto stream = ZStream::inflating(format);
    if (!stream) return std::nullopt;
    return inflateAll(*stream, data, length);
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

}  // namespace supportsdk
