#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "supportsdk/proactive/files/FileAttributes.h"

namespace supportsdk {

/// Headers of tar archives (POSIX.1-1988 "ustar" with numbers in base 256). Pure; any thread.

inline constexpr std::size_t tarBlockBytes = 512;
using TarBlock = std::array<std::byte, tarBlockBytes>;

/// What follows the data of an entry up to the next block.
constexpr std::size_t tarPaddingOf(std::uintmax_t size) {
    return static_cast<std::size_t>((tarBlockBytes - size % tarBlockBytes) % tarBlockBytes);
}

/// Where a field lies in a header.
struct TarField {
    std::size_t offset;
    std::size_t length;
};

namespace tarField {
inline constexpr TarField name{0, 100};
inline constexpr TarField mode{100, 8};
inline constexpr TarField uid{108, 8};
inline constexpr TarField gid{116, 8};
inline constexpr TarField size{124, 12};
inline constexpr TarField mtime{136, 12};
inline constexpr TarField checksum{148, 8};
inline constexpr TarField type{156, 1};
inline constexpr TarField linkName{157, 100};
inline constexpr TarField magic{257, 6};
inline constexpr TarField version{263, 2};
inline constexpr TarField userName{265, 32};
inline constexpr TarField groupName{297, 32};
inline constexpr TarField prefix{345, 155};
}  // namespace tarField

namespace tarType {
inline constexpr char file = '0';
/// As archives older than POSIX mark a file.
inline constexpr char oldFile = '\0';
inline constexpr char folder = '5';
/// A pax extended header for the next entry (POSIX.1-2001).
inline constexpr char pax = 'x';
/// A long name for the next entry, GNU's way.
inline constexpr char gnuName = 'L';
}  // namespace tarType

/// The two fields of a path. One of at most 100 bytes is all name. A longer one is cut at the first
/// "/" at or after its byte length minus 101, or, when that is its very first byte, at the next.
/// Nothing when there is no such slash, or when a part is too long for its field.
struct TarName {
    std::string prefix;
    std::string name;
};
std::optional<TarName> splitTarName(std::string_view path);
/// The same for any path. One that cannot be split as above keeps what two fields can hold of its
/// end: it is cut in the midst of a name where no slash helps, and a path that is too long loses
/// its outermost folders.
TarName fitTarName(std::string_view path);

bool isAscii(std::string_view text);
/// Clears `field`, then copies as much of `text` as fits; nothing when that is not ASCII.
void writeTarText(std::span<std::byte> field, std::string_view text);

/// Writes `value` into the first `maximum` bytes of `field`: in octal digits, at least `minimum` of
/// them, filled up with zeros, as many more as it needs; or, when it is negative or needs more than
/// `maximum`, big-endian in base 256 over all of these bytes, the top bit of the first one set.
void writeTarNumber(std::span<std::byte> field, std::size_t minimum, std::size_t maximum,
                    std::int64_t value);

/// The header of a file (tarType::file) or folder, its checksum included; a folder's size is 0.
/// `name` may be empty; its bytes are taken as they are.
TarBlock makeTarHeader(const TarName& name, const FileAttributes& attributes, char type);

/// Puts the sum of all bytes into the checksum field, counted as if that held blanks.
void writeTarChecksum(TarBlock& header);

}  // namespace supportsdk
