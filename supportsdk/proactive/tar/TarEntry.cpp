#include "supportsdk/proactive/tar/TarEntry.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "supportsdk/proactive/tar/TarHeader.h"

namespace supportsdk {

namespace {

/// GNU's magic goes on with a blank, and its header has other fields where the prefix is.
constexpr std::string_view posixMagic{"ustar\0", 6};
constexpr std::size_t gnuSparseContinues = 482;
constexpr std::uint32_t permissionBits = 0777;

std::string_view textOf(std::span<const std::byte> block, TarField field) {
    return {reinterpret_cast<const char*>(block.data()) + field.offset, field.length};
}

/// Up to the zero byte that a full field does not have.
std::string_view stringOf(std::span<const std::byte> block, TarField field) {
    const auto text = textOf(block, field);
    return text.substr(0, text.find('\0'));
}

/// Big-endian; the top bit is a mark, the one below it the sign.
std::optional<std::int64_t> readBase256(std::string_view field) {
    constexpr int byteBits = 8;
    const auto first = static_cast<unsigned char>(field.front());
    std::int64_t value = (first & 0x40) != 0 ? -1 : 0;
    value = value * 0x40 + (first & 0x3f);
    constexpr auto most = std::numeric_limits<std::int64_t>::max() >> byteBits;
    for (const char letter : field.substr(1)) {
        if (value > most || value < -most - 1) return std::nullopt;
        value = value * (1 << byteBits) + static_cast<unsigned char>(letter);
    }
    return value;
}

/// Blank is 0, as in the fields that a type does not use.
std::optional<std::int64_t> readNumber(std::string_view field) {
    if ((field.front() & 0x80) != 0) return readBase256(field);
    const auto start = field.find_first_not_of(' ');
    if (start == std::string_view::npos || field[start] == '\0') return 0;
    field.remove_prefix(start);
    std::int64_t value = 0;
    const auto* const end = field.data() + field.size();
    const auto [rest, fault] = std::from_chars(field.data(), end, value, 8);
    const bool isEnded = rest == end || *rest == ' ' || *rest == '\0';
    if (fault != std::errc() || !isEnded || value < 0) return std::nullopt;
    return value;
}

bool isChecksumRight(std::span<const std::byte> block) {
    const auto stored = readNumber(textOf(block, tarField::checksum));
    std::int64_t plain = 0;
    std::int64_t withSign = 0;
    for (std::size_t place = 0; place < block.size(); place++) {
        const bool isSum = place - tarField::checksum.offset < tarField::checksum.length;
        const auto byte = isSum ? std::byte{' '} : block[place];
        plain += std::to_integer<unsigned char>(byte);
        withSign += std::to_integer<signed char>(byte);
    }
    return stored && (*stored == plain || *stored == withSign);
}

std::string nameOf(std::span<const std::byte> block) {
    std::string name(stringOf(block, tarField::name));
    const auto prefix = stringOf(block, tarField::prefix);
    if (textOf(block, tarField::magic) != posixMagic || prefix.empty()) return name;
    return std::string(prefix).append("/").append(name);
}

}  // namespace

std::optional<TarEntry> readTarEntry(std::span<const std::byte> block) {
    const auto number = [&](TarField field) { return readNumber(textOf(block, field)); };
    const auto size = number(tarField::size);
    if (!isChecksumRight(block) || !size || *size < 0) return std::nullopt;
    TarEntry entry;
    entry.name = nameOf(block);
    entry.type = static_cast<char>(block[tarField::type.offset]);
    entry.permissions =
        static_cast<std::uint32_t>(number(tarField::mode).value_or(0)) & permissionBits;
    entry.size = static_cast<std::uintmax_t>(*size);
    entry.modified = number(tarField::mtime).value_or(0);
    entry.hasSparseMap = block[gnuSparseContinues] != std::byte{0};
    return entry;
}

bool isEmptyBlock(std::span<const std::byte> block) {
    return std::ranges::all_of(block, [](std::byte byte) { return byte == std::byte{0}; });
}

std::optional<std::int64_t> readPaxSeconds(std::string_view text) {
    std::int64_t value = 0;
    const auto* const end = text.data() + text.size();
    const auto [rest, fault] = std::from_chars(text.data(), end, value);
    if (fault != std::errc() || (rest != end && *rest != '.')) return std::nullopt;
    return value;
}

}  // namespace supportsdk
