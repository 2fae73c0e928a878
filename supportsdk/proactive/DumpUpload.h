#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "supportsdk/platform/Values.h"
#include "supportsdk/proactive/files/FileHandle.h"

namespace supportsdk {

/// What is longer is not uploaded: while it is sent, all of it is in memory, a third larger.
inline constexpr std::size_t maximumDumpBytes = std::size_t{64} * 1024 * 1024;

struct DumpBody {
    Bytes json;
    /// Why there is none, in English; "" when there is.
    std::string problem;
};

/// The JSON body with which a dump is uploaded: `owner` (an object) and "file_data", what is left
/// of the file in Base64 (RFC 4648) with a line feed after every 64 characters. A problem when the
/// file is not plain, cannot be read, has more left than maximumDumpBytes, when there is no memory
/// for it, or when `isWanted` says no between two pieces. Any thread.
DumpBody dumpUploadBody(const Json& owner, FileHandle& file, const std::function<bool()>& isWanted);

}  // namespace supportsdk
