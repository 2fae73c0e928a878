#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "supportsdk/proactive/ZStream.h"
#include "supportsdk/proactive/dump/DumpMeter.h"
#include "supportsdk/proactive/files/FileHandle.h"

namespace supportsdk {

/// The bytes of an archive, gunzipped when it begins as gzip does: one stream of that or several,
/// whatever may come behind them. Goes through fixed buffers. One thread at a time.
class ArchiveInput {
 public:
    ArchiveInput(std::shared_ptr<FileHandle> file, DumpMeter& meter);

    /// The next bytes, a multiple of 512 but at the end; none at the end, after a failure, and once
    /// the host wants no more.
    std::span<const std::byte> next();
    /// Passes some of these.
    void consume(std::size_t bytes);

    [[nodiscard]] bool isCompressed() const { return inflating_.has_value(); }
    /// Why there are no more bytes; "" when that is the end, or the host's wish.
    [[nodiscard]] const std::string& failure() const { return failure_; }
    /// How many bytes were passed.
    [[nodiscard]] std::uintmax_t passed() const { return passed_; }

 private:
    void refill();
    void inflate();
    bool beginStream();
    bool readMore();
    void fail(const std::string& message);

    std::shared_ptr<FileHandle> file_;
    DumpMeter& meter_;
    std::vector<std::byte> input_;
    std::span<const std::byte> read_;
    std::vector<std::byte> output_;
    std::span<const std::byte> ready_;
    std::optional<ZStream> inflating_;
    std::uintmax_t taken_ = 0;
    std::uintmax_t passed_ = 0;
    bool isInStream_ = false;
    bool isAtEnd_ = false;
    std::string failure_;
};

}  // namespace supportsdk
