#pragma once

#include <cstdint>
#include <string_view>

namespace supportsdk {

/// The loader's name for the format that `data` begins as ("png", "jpeg", "gif", "bmp", "webp");
/// null for all others.
const char* pictureFormat(std::string_view data);

/// Whether a picture goes on to its end, for the formats whose loaders take one that is cut off for
/// a whole one and leave the rest blank (PNG, JPEG, BMP). True for the other formats.
bool hasPictureEnd(std::string_view format, std::string_view data);

/// How often the whole picture is gone over to decode it: the scans of a JPEG, else 1.
std::uint64_t picturePasses(std::string_view format, std::string_view data);

/// The pixels that the header of a WebP claims (RFC 9649); 0 when it claims none.
std::uint64_t webpPixels(std::string_view data);

}  // namespace supportsdk
