#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "supportsdk/platform/Values.h"
#include "supportsdk/proactive/ZStream.h"

namespace supportsdk {

/// Blocks of memory through zlib. Any thread. Nothing when there is no memory.

/// Nothing also for a level that zlib does not have.
std::optional<Bytes> deflateBytes(std::span<const std::byte> data, ZFormat format, int level);

struct InflatedBytes {
    /// What came out; when the stream did not end, filled up with zeros to the length that the
    /// buffer had.
    Bytes bytes;
    /// Not for a stream that is damaged or cut.
    bool ended = false;
};

/// Into a buffer whose length begins with `length` and grows by half of the data's; it has room for
/// twice that from the beginning. Nothing when it grows beyond maximumInflatedBytes.
std::optional<InflatedBytes> inflateBytes(std::span<const std::byte> data, ZFormat format,
                                          std::size_t length);

}  // namespace supportsdk
