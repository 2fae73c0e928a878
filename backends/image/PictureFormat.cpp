#include "backends/image/PictureFormat.h"

#include <algorithm>

namespace supportsdk {

using namespace std::string_view_literals;

namespace {

/// Little-endian, `bytes` of them at `offset`; 0 behind the end.
std::uint64_t number(std::string_view data, std::size_t offset, std::size_t bytes) {
    if (data.size() < offset + bytes) return 0;
    std::uint64_t value = 0;
    for (std::size_t each = bytes; each > 0; --each)
        value = value << 8 | static_cast<std::uint8_t>(data[offset + each - 1]);
    return value;
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
    if (format == "jpeg") return data.find("\xff\xd9") != std::string_view::npos;
    return true;
}

std::uint64_t picturePasses(std::string_view format, std::string_view data) {
    if (format != "jpeg") return 1;
    constexpr auto startOfScan = "\xff\xda"sv;
    std::uint64_t scans = 0;
    for (auto at = data.find(startOfScan); at != std::string_view::npos;
         at = data.find(startOfScan, at + startOfScan.size()))
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
