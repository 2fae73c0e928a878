#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <utility>

struct z_stream_s;

namespace supportsdk {

/// How compressed bytes are wrapped: RFC 1950 or RFC 1952.
enum class ZFormat { zlib, gzip };

/// One stream through zlib, in one of its two directions. One thread at a time.
class ZStream {
 public:
    enum class Flush { none, sync, finish };
    /// goesOn: all input is taken, or the output is full.
    enum class State { goesOn, ended, failed };

    static constexpr int defaultLevel = -1;

    /// `level` from 0 (none) to 9 (best). Nothing for any other, and when there is no memory.
    static std::optional<ZStream> deflating(ZFormat format, int level = defaultLevel);
    /// ZFormat::gzip takes both formats, ZFormat::zlib its own alone. Nothing when there is no
    /// memory.
    static std::optional<ZStream> inflating(ZFormat format);

    /// Takes bytes from the front of `input` and puts some to the front of `output`, which is not
    /// null; both are what is left of them afterwards. Spans of any length. What comes behind the
    /// end of a stream that is inflated is left. `flush` holds for the end of `input`.
    State step(std::span<const std::byte>& input, std::span<std::byte>& output, Flush flush);

 private:
    using Turn = int (*)(z_stream_s*, int);
    // zlib keeps the address of its stream, so that one never moves.
    using Stream = std::unique_ptr<z_stream_s, void (*)(z_stream_s*)>;

    ZStream(Stream stream, Turn turn) : stream_(std::move(stream)), turn_(turn) {}

    Stream stream_;
    Turn turn_;
};

}  // namespace supportsdk
