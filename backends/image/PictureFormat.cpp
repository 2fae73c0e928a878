#include "backends/image/PictureFormat.h"

#include <algorithm>

namespace supportsdk {

using namespace std::string_view_literals;

namespace {

/// Where the compressed data of a JPEG begins, behind the segments before it: these may hold a
/// whole picture of their own, as a thumbnail. The end of `data` when it does not begin.
std::size_t startOfScan(std::string_view data) {
    std::size_t at = 2;
    while (at + 4 <= data.size() && data[at] == '\xff') {
        const auto marker = data[at + 1];
        if (marker == '\xda') return at;
        const auto high = static_cast<std::uint8_t>(data[at + 2]);
        const auto low = static_cast<std::uint8_t>(data[at + 3]);
        // A marker may be preceded by any number of fill bytes.
        at += marker == '\xff' ? 1 : std::size_t{2} + (high << 8 | low);
    }
    return data.size();
}

/// Little-endian, `bytes` of them at `offset`; 0 behind the end.
std::uint64_t number(std::string_view data, std::size_t offset, std::size_t bytes) {
    if (data.size() < offset + bytes) return 0;
    std::uint64_t value = 0;
    for (std::size_t each = bytes; each > 0; --each)
        value = value << 8 | static_cast<std::uint8_t>(data[offset + each - 1]);
    return value;
}

/// Whether all rows of a BMP that is not compressed are there. True for compressed ones.
bool hasAllRows(std::string_view data) {
    const bool isOld = number(data, 14, 4) == 12;
    const auto width = isOld ? number(data, 18, 2) : number(data, 18, 4);
    auto height = isOld ? number(data, 20, 2) : number(data, 22, 4);
    const auto depth = number(data, isOld ? 24 : 28, 2);
    const auto compression = isOld ? 0 : number(data, 30, 4);
    if (compression != 0 && compression != 3) return true;
    // Rows that begin at the top are told by a negative number.
    if (!isOld && height > 0x7FFFFFFF) height = 0x100000000 - height;
    const auto rowBytes = (width * depth + 31) / 32 * 4;
    const auto first = number(data, 10, 4);
    return first <= data.size() && (rowBytes == 0 || height <= (data.size() - first) / rowBytes);
}

}  // namespace

const char* pictureFormat(std::string_view data) {
    if (data.starts_with("\x89PNG\r\n\x1a\n"sv)) return "png";
    if (data.starts_with("\xff\xd8\xff"sv)) return "jpeg";
    if (data.starts_with("GIF87a"sv) || data.starts_with("GIF89a"sv)) return "gif";
    if (data.starts_with("BM"sv)) return "bmp";
    if (data.starts_with("RIFF"sv) && data.substr(0, 12).ends_with("WEBP"sv)) return "webp";
    return nullptr;
}

bool hasPictureEnd(std::string_view format, std::string_view data) {
    if (format == "png") return data.find("IEND\xae\x42\x60\x82") != std::string_view::npos;
    if (format == "jpeg") return data.find("\xff\xd9", startOfScan(data)) != std::string_view::npos;
    return format != "bmp" || hasAllRows(data);
}

std::uint64_t picturePasses(std::string_view format, std::string_view data) {
    if (format != "jpeg") return 1;
    constexpr auto scan = "\xff\xda"sv;
    std::uint64_t scans = 0;
    for (auto at = data.find(scan); at != std::string_view::npos;
         at = data.find(scan, at + scan.size()))
        ++scans;
    return std::max<std::uint64_t>(scans, 1);
}

std::uint64_t webpPixels(std::string_view data) {
    const auto chunk = data.substr(std::min<std::size_t>(data.size(), 12), 4);
    if (chunk == "VP8X"sv) return (number(data, 24, 3) + 1) * (number(data, 27, 3) + 1);
    if (chunk == "VP8 "sv) return (number(data, 26, 2) & 0x3FFF) * (number(data, 28, 2) & 0x3FFF);
    if (chunk != "VP8L"sv) return 0;
    const auto sides = number(data, 21, 4);
    return ((sides & 0x3FFF) + 1) * ((sides >> 14 & 0x3FFF) + 1);
}

}  // namespace supportsdk
