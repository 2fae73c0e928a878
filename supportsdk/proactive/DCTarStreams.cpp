#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "supportsdk/proactive/DCTar.h"
#include "supportsdk/proactive/ZBytes.h"
#include "supportsdk/proactive/ZStream.h"

namespace supportsdk {

namespace {

/// What zlib is given, and asked for, at a time.
constexpr std::size_t zlibBytes = 16384;
/// What the disk is: calls of the system cost.
constexpr std::size_t diskBytes = 16 * zlibBytes;

class ChunkedInput {
 public:
    explicit ChunkedInput(FileHandle& file) : file_(file) {}

    /// Empty at the end of the file; nothing when it cannot be read.
    std::optional<std::span<const std::byte>> next() {
        if (left_.empty()) {
            std::error_code error;
            const auto count = file_.read(buffer_, error);
            if (error) return std::nullopt;
            left_ = std::span(buffer_).first(count);
        }
        const auto chunk = left_.first(std::min(left_.size(), zlibBytes));
        left_ = left_.subspan(chunk.size());
        return chunk;
    }

 private:
    FileHandle& file_;
    Bytes buffer_ = Bytes(diskBytes);
    std::span<const std::byte> left_;
};

class GatheredOutput {
 public:
    explicit GatheredOutput(FileHandle& file) : file_(file) {}

    /// Where the next bytes go.
    std::span<std::byte> room() { return std::span(buffer_).subspan(used_, zlibBytes); }

    /// That many were put there. False when the disk does not take them.
    bool add(std::size_t count) {
        used_ += count;
        return buffer_.size() - used_ >= zlibBytes || flush();
    }

    bool flush() {
        std::error_code error;
        return file_.write(std::span(buffer_).first(std::exchange(used_, 0)), error);
    }

 private:
    FileHandle& file_;
    Bytes buffer_ = Bytes(diskBytes);
    std::size_t used_ = 0;
};

struct Flushes {
    ZStream::Flush withData;
    ZStream::Flush atEnd;
};
constexpr Flushes deflating{ZStream::Flush::none, ZStream::Flush::finish};
constexpr Flushes inflating{ZStream::Flush::sync, ZStream::Flush::sync};

/// One chunk, until zlib wants another. Nothing when the output cannot be written.
std::optional<ZStream::State> pumpChunk(ZStream& stream, std::span<const std::byte> chunk,
                                        ZStream::Flush flush, GatheredOutput& output) {
    while (true) {
        auto room = output.room();
        const auto state = stream.step(chunk, room, flush);
        if (!output.add(zlibBytes - room.size())) return std::nullopt;
        if (state != ZStream::State::goesOn || !room.empty()) return state;
    }
}

bool pump(ZStream& stream, FileHandle& source, const Flushes& flushes, FileHandle& target) {
    ChunkedInput input(source);
    GatheredOutput output(target);
    while (true) {
        const auto chunk = input.next();
        if (!chunk) return false;
        const auto flush = chunk->empty() ? flushes.atEnd : flushes.withData;
        const auto state = pumpChunk(stream, *chunk, flush, output);
        if (state == ZStream::State::ended) return output.flush();
        // After the last chunk nothing can come any more: a stream that goes on was cut.
        if (state != ZStream::State::goesOn || chunk->empty()) return false;
    }
}

bool pumpToPath(std::optional<ZStream> stream, FileHandle& source, const Flushes& flushes,
                const std::string& path) {
    // Opening the target empties it, which the source would not survive.
    if (!stream || source.isAtPath(path)) return false;
    const auto target = FileHandle::forWritingAtPath(path);
    if (!target) return false;
    std::error_code error;
    const auto file = target->isPlain() ? std::filesystem::canonical(path, error) : "";
    if (pump(*stream, source, flushes, *target) && target->close(error)) return true;
    // What is incomplete misleads. A link, or a device, is not what was written.
    std::filesystem::remove(file, error);
    return false;
}

ZFormat format(bool isGzip) {
    return isGzip ? ZFormat::gzip : ZFormat::zlib;
}

}  // namespace

std::optional<Bytes> DCTar::gzipCompress(std::span<const std::byte> data) {
    return deflate(data, true);
}

std::optional<Bytes> DCTar::gzipDecompress(std::span<const std::byte> data) {
    return inflate(data, true);
}

std::optional<Bytes> DCTar::zlibCompress(std::span<const std::byte> data) {
    return deflate(data, false);
}

std::optional<Bytes> DCTar::zlibDecompress(std::span<const std::byte> data) {
    return inflate(data, false);
}

std::optional<Bytes> DCTar::deflate(std::span<const std::byte> data, bool isGzip) {
    if (data.empty()) return std::nullopt;
    return deflateBytes(data, format(isGzip), ZStream::defaultLevel);
}

std::optional<Bytes> DCTar::inflate(std::span<const std::byte> data, bool isGzip) {
    if (data.empty()) return std::nullopt;
    auto inflated = inflateBytes(data, format(isGzip), data.size() + data.size() / 2);
    if (!inflated || !inflated->ended) return std::nullopt;
    return std::move(inflated->bytes);
}

bool DCTar::fileDeflate(FileHandle& source, bool isGzip, const std::string& target) {
    return pumpToPath(ZStream::deflating(format(isGzip)), source, deflating, target);
}

bool DCTar::fileInflate(FileHandle& source, bool isGzip, const std::string& target) {
    return pumpToPath(ZStream::inflating(format(isGzip)), source, inflating, target);
}

}  // namespace supportsdk
