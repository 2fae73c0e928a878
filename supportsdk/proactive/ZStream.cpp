#include "supportsdk/proactive/ZStream.h"

#define ZLIB_CONST
#include <zlib.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace supportsdk {

namespace {

constexpr int memoryLevel = 8;
constexpr int windowBits = MAX_WBITS;
// What zlib adds to the bits of the window to mean a format.
constexpr int gzipAlone = 16;
constexpr int gzipOrZlib = 32;

int code(ZStream::Flush flush) {
    switch (flush) {
        case ZStream::Flush::none:
            return Z_NO_FLUSH;
        case ZStream::Flush::sync:
            return Z_SYNC_FLUSH;
        case ZStream::Flush::finish:
            break;
    }
    return Z_FINISH;
}

/// zlib counts in 32 bits; a longer span goes there in several pieces.
uInt countable(std::size_t length) {
    return static_cast<uInt>(std::min<std::size_t>(length, std::numeric_limits<uInt>::max()));
}

/// Fine with a stream that could not be begun.
template <int (*end)(z_stream*)>
void release(z_stream* stream) {
    end(stream);
    delete stream;
}

}  // namespace

std::optional<ZStream> ZStream::deflating(ZFormat format, int level) {
    Stream stream(new z_stream{}, &release<&deflateEnd>);
    const int bits = windowBits + (format == ZFormat::gzip ? gzipAlone : 0);
    if (deflateInit2(stream.get(), level, Z_DEFLATED, bits, memoryLevel, Z_DEFAULT_STRATEGY) !=
        Z_OK) {
        return std::nullopt;
    }
    return ZStream(std::move(stream), &::deflate);
}

std::optional<ZStream> ZStream::inflating(ZFormat format) {
    Stream stream(new z_stream{}, &release<&inflateEnd>);
    const int bits = windowBits + (format == ZFormat::gzip ? gzipOrZlib : 0);
    if (inflateInit2(stream.get(), bits) != Z_OK) return std::nullopt;
    return ZStream(std::move(stream), &::inflate);
}

ZStream::State ZStream::step(std::span<const std::byte>& input, std::span<std::byte>& output,
                             Flush flush) {
    while (true) {
        const auto given = countable(input.size());
        const auto room = countable(output.size());
        stream_->next_in = reinterpret_cast<const Bytef*>(input.data());
        stream_->avail_in = given;
        stream_->next_out = reinterpret_cast<Bytef*>(output.data());
        stream_->avail_out = room;
        const int result = turn_(stream_.get(), given < input.size() ? Z_NO_FLUSH : code(flush));
        input = input.subspan(given - stream_->avail_in);
        output = output.subspan(room - stream_->avail_out);
        if (result == Z_STREAM_END) return State::ended;
        // No progress is no fault: the caller sees it by what is left.
        if (result != Z_OK && result != Z_BUF_ERROR) return State::failed;
        const bool nextPiece = (stream_->avail_in == 0 && !input.empty()) ||
                               (stream_->avail_out == 0 && !output.empty());
        if (!nextPiece) return State::goesOn;
    }
}

}  // namespace supportsdk
