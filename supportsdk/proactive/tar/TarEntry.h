#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace supportsdk {

/// What the header of any tar says: that of 1979, POSIX's "ustar", and GNU's. Pure; any thread.
struct TarEntry {
    std::string name;
    char type = '\0';
    /// The last nine bits of the mode.
    std::uint32_t permissions = 0;
    /// Of the data that follow.
    std::uintmax_t size = 0;
    std::int64_t modified = 0;
    /// A map of GNU's sparse files goes on in the next block.
    bool hasSparseMap = false;
};

/// `block` has 512 bytes. Nothing when the checksum, taken of signed or of unsigned bytes, is
/// wrong, or when the size is no number.
std::optional<TarEntry> readTarEntry(std::span<const std::byte> block);
bool isEmptyBlock(std::span<const std::byte> block);

/// A number of decimal seconds, fractions cut off; nothing when it is none or cannot be counted.
std::optional<std::int64_t> readPaxSeconds(std::string_view text);

}  // namespace supportsdk
