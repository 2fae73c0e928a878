#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "supportsdk/proactive/tar/TarEntry.h"

namespace supportsdk {

/// What the headers before an entry say of it, in the way of POSIX.1-2001 or of GNU.
class ExtendedEntry {
 public:
    /// GNU's long name, with the zero byte at its end or without.
    void setName(std::string_view text);
    /// False when the records, or their numbers, are damaged.
    bool readRecords(std::string_view text);
    /// A file whose data are mixed with a map of them.
    [[nodiscard]] bool isSparse() const { return isSparse_; }
    void applyTo(TarEntry& entry) const;

 private:
    bool set(std::string_view key, std::string_view value);

    std::optional<std::string> name_;
    std::optional<std::string> sparseName_;
    std::optional<std::uintmax_t> size_;
    std::optional<std::int64_t> modified_;
    bool isSparse_ = false;
};

}  // namespace supportsdk
