#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// gzip (RFC 1952) of bytes in memory. Any thread.

/// What grows beyond this is not restored in memory: some kilobytes of input can ask for all the
/// memory there is. Files have no such limit (DCTar::gzipDecompress).
inline constexpr std::size_t maximumInflatedBytes = std::size_t{256} * 1024 * 1024;

/// Whether the data begins as gzip does.
SUPPORTSDK_API bool isGzippedData(std::span<const std::byte> data);

/// `level` from 0 (none) to 1 (best), rounded to a ninth; below 0 the default. Empty data, and data
/// that is gzip already, come back as they are. Nothing for any other level, and when there is no
/// memory.
SUPPORTSDK_API std::optional<Bytes> gzippedDataWithCompressionLevel(std::span<const std::byte> data,
                                                                    float level);
SUPPORTSDK_API std::optional<Bytes> gzippedData(std::span<const std::byte> data);

/// Data that is empty or no gzip comes back as it is. Of damaged data, what there was of it, filled
/// up with zero bytes to the length that the buffer had. Nothing beyond maximumInflatedBytes, and
/// when there is no memory.
SUPPORTSDK_API std::optional<Bytes> gunzippedData(std::span<const std::byte> data);

}  // namespace supportsdk
