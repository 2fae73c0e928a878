#include <zlib.h>

#include <array>
#include <functional>

#include "service/rest/Desk.h"

namespace supportsdk::service {

namespace {

constexpr unsigned side = 50;

void appendNumber(std::string& bytes, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(static_cast<unsigned char>(number >> shift));
}

void appendChunk(std::string& png, const std::string& type, const std::string& content) {
    const std::string checked = type + content;
    appendNumber(png, static_cast<std::uint32_t>(content.size()));
    png += checked;
    appendNumber(png,
                 static_cast<std::uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(checked.data()),
                                                  static_cast<uInt>(checked.size()))));
}

std::string deflated(const std::string& plain) {
    uLongf size = compressBound(plain.size());
    std::string packed(size, '\0');
    compress(reinterpret_cast<Bytef*>(packed.data()), &size,
             reinterpret_cast<const Bytef*>(plain.data()), plain.size());
    packed.resize(size);
    return packed;
}

/// One colour for each person, as a PNG (ISO/IEC 15948) with 8-bit RGB.
std::string picture(const std::string& person) {
    const auto hash = std::hash<std::string>{}(person);
    std::string row(1, '\0');
    for (unsigned x = 0; x < side; ++x) {
        for (const unsigned shift : {0U, 8U, 16U})
            row += static_cast<char>(static_cast<unsigned char>(80 + (hash >> shift) % 128));
    }
    std::string pixels;
    for (unsigned y = 0; y < side; ++y) pixels += row;

    std::string header;
    appendNumber(header, side);
    appendNumber(header, side);
    header += std::string("\x08\x02\x00\x00\x00", 5);
    std::string png = "\x89PNG\r\n\x1a\n";
    appendChunk(png, "IHDR", header);
    appendChunk(png, "IDAT", deflated(pixels));
    appendChunk(png, "IEND", "");
    return png;
}

}  // namespace

void addAvatarRoutes(Router& router) {
    for (const char* kind : {"members_users", "partners_users", "relay"}) {
        router.add("GET", std::string("/api/v1/avatar/") + kind + "/*/50,50", Body::none,
                   [kind](Call& call) { return bytes(picture(kind + call.id), "image/png"); });
    }
}

}  // namespace supportsdk::service
