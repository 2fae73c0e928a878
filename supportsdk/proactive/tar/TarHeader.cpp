#include "supportsdk/proactive/tar/TarHeader.h"

#include <algorithm>
#include <charconv>
#include <numeric>

namespace supportsdk {

namespace {

constexpr std::size_t shortNumberDigits = 6;
constexpr std::size_t longNumberDigits = 11;
constexpr std::uint32_t permissionBits = 07777;
/// The rest of the field ends the number, unless that grows over it.
constexpr std::string_view shortNumber{"000000 \0", 8};
constexpr std::string_view longNumber = "00000000000 ";
constexpr TarField deviceMajor{329, 8};
constexpr TarField deviceMinor{337, 8};

std::span<std::byte> fieldOf(TarBlock& header, TarField field) {
    return std::span(header).subspan(field.offset, field.length);
}

void put(std::string_view text, std::span<std::byte> into) {
    std::ranges::transform(text.substr(0, into.size()), into.begin(),
                           [](char letter) { return std::byte(letter); });
}

TarBlock emptyHeader() {
    TarBlock header{};
    for (const auto field :
         {tarField::mode, tarField::uid, tarField::gid, deviceMajor, deviceMinor}) {
        put(shortNumber, fieldOf(header, field));
    }
    put(longNumber, fieldOf(header, tarField::size));
    put(longNumber, fieldOf(header, tarField::mtime));
    put(std::string_view{"ustar\0", 6}, fieldOf(header, tarField::magic));
    put("00", fieldOf(header, tarField::version));
    return header;
}

/// Big-endian and continued with its sign, so that readers that know the format get it back.
void putBase256(std::span<std::byte> field, std::int64_t value) {
    for (auto place = field.rbegin(); place != field.rend(); ++place) {
        *place = std::byte(value & 0xff);
        value >>= 8;
    }
    field.front() |= std::byte{0x80};
}

std::size_t slashOfPrefix(std::string_view path) {
    return path.find('/', std::max<std::size_t>(path.size() - tarField::name.length - 1, 1));
}

/// The last bytes that fit, from the beginning of a name in the path if there is one.
std::string_view tailForPrefix(std::string_view prefix) {
    if (prefix.size() <= tarField::prefix.length) return prefix;
    const auto start = prefix.size() - tarField::prefix.length;
    const auto slash = prefix.find('/', start - 1);
    return prefix.substr(slash == std::string_view::npos ? start : slash + 1);
}

}  // namespace

std::optional<TarName> splitTarName(std::string_view path) {
    if (path.size() <= tarField::name.length) return TarName{"", std::string(path)};
    const auto slash = slashOfPrefix(path);
    // So is npos.
    if (slash > tarField::prefix.length) return std::nullopt;
    return TarName{std::string(path.substr(0, slash)), std::string(path.substr(slash + 1))};
}

TarName fitTarName(std::string_view path) {
    if (auto name = splitTarName(path)) return *std::move(name);
    const auto slash = slashOfPrefix(path);
    const bool isBeforeName = slash != std::string_view::npos && slash + 1 < path.size();
    const auto end = isBeforeName ? slash : path.size() - tarField::name.length;
    return {std::string(tailForPrefix(path.substr(0, end))),
            std::string(path.substr(isBeforeName ? end + 1 : end))};
}

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char letter) { return (letter & 0x80) == 0; });
}

void writeTarText(std::span<std::byte> field, std::string_view text) {
    std::ranges::fill(field, std::byte{0});
    if (isAscii(text)) put(text, field);
}

void writeTarNumber(std::span<std::byte> field, std::size_t minimum, std::size_t maximum,
                    std::int64_t value) {
    std::array<char, 24> text{};
    const auto* const end = std::to_chars(text.begin(), text.end(), value, 8).ptr;
    const std::string_view digits(text.data(), static_cast<std::size_t>(end - text.data()));
    if (value < 0 || digits.size() > maximum) return putBase256(field.first(maximum), value);

    const auto width = std::max(minimum, digits.size());
    std::ranges::fill(field.first(width), std::byte{'0'});
    put(digits, field.first(width).last(digits.size()));
}

TarBlock makeTarHeader(const TarName& name, const FileAttributes& attributes, char type) {
    auto header = emptyHeader();
    const auto number = [&](TarField field, std::size_t minimum, std::size_t maximum, auto value) {
        writeTarNumber(fieldOf(header, field), minimum, maximum, static_cast<std::int64_t>(value));
    };
    const auto shortOne = [&](TarField field, auto value) {
        number(field, shortNumberDigits, field.length, value);
    };

    put(name.name, fieldOf(header, tarField::name));
    put(name.prefix, fieldOf(header, tarField::prefix));
    shortOne(tarField::mode, attributes.permissions & permissionBits);
    shortOne(tarField::uid, attributes.ownerNumber);
    shortOne(tarField::gid, attributes.groupNumber);
    number(tarField::size, longNumberDigits, tarField::size.length,
           type == tarType::folder ? 0 : attributes.size);
    // The blank behind the time stays, whatever the time is.
    number(tarField::mtime, longNumberDigits, longNumberDigits, attributes.modified);
    header[tarField::type.offset] = std::byte(type);
    writeTarText(fieldOf(header, tarField::userName), attributes.ownerName);
    writeTarText(fieldOf(header, tarField::groupName), attributes.groupName);
    writeTarChecksum(header);
    return header;
}

void writeTarChecksum(TarBlock& header) {
    const auto field = fieldOf(header, tarField::checksum);
    std::ranges::fill(field, std::byte{' '});
    const auto sum = std::accumulate(
        header.begin(), header.end(), std::int64_t{0},
        [](std::int64_t total, std::byte byte) { return total + std::to_integer<int>(byte); });
    // 512 bytes never need more than six digits.
    writeTarNumber(field, shortNumberDigits, shortNumberDigits, sum);
    field[shortNumberDigits] = std::byte{0};
}

}  // namespace supportsdk
