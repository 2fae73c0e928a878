#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// All bytes of a plain file; nothing when it cannot be read, is longer than `maximumBytes`, or is
/// a pipe or a device, which could block its reader for ever. Any thread.
[[nodiscard]] SUPPORTSDK_API std::optional<Bytes> readPlainFile(const std::filesystem::path& file,
                                                                std::uintmax_t maximumBytes);

}  // namespace supportsdk
