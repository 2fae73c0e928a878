#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <system_error>
#include <vector>

#include "supportsdk/proactive/ZStream.h"
#include "supportsdk/proactive/files/FileHandle.h"

namespace supportsdk {

/// Compresses into a file, through a fixed buffer. One thread at a time.
class GzipOutput {
 public:
    /// `level` as zlib has it. Null when there is no memory.
    static std::unique_ptr<GzipOutput> create(FileHandle& file, int level);

    bool write(std::span<const std::byte> data, std::error_code& error);
    /// Ends the stream; nothing is written afterwards.
    bool finish(std::error_code& error);

 private:
    GzipOutput(FileHandle& file, ZStream stream);
    bool push(std::span<const std::byte> data, ZStream::Flush flush, std::error_code& error);
    bool writeBuffer(std::error_code& error);

    FileHandle& file_;
    ZStream stream_;
    std::vector<std::byte> buffer_;
    std::span<std::byte> room_;
};

}  // namespace supportsdk
