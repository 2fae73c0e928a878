#include "supportsdk/core/MultipartForm.h"

#include <openssl/rand.h>

#include <algorithm>
#include <array>
#include <utility>

namespace supportsdk {

namespace {

std::string randomBoundary() {
    std::array<unsigned char, 16> random{};
    RAND_bytes(random.data(), static_cast<int>(random.size()));
    constexpr std::string_view digits = "0123456789abcdef";
    std::string boundary = "form-";
    for (const auto octet : random) {
        boundary += digits[octet >> 4U];
        boundary += digits[octet & 0x0FU];
    }
    return boundary;
}

/// A quote or a line break would end the name early; browsers escape these three.
std::string escaped(std::string_view name) {
    std::string result;
    for (const char letter : name) {
        if (letter == '"') {
            result += "%22";
        } else if (letter == '\r') {
            result += "%0D";
        } else if (letter == '\n') {
            result += "%0A";
        } else {
            result += letter;
        }
    }
    return result;
}

std::string disposition(std::string_view name) {
    return "Content-Disposition: form-data; name=\"" + escaped(name) + "\"";
}

}  // namespace

MultipartForm::MultipartForm() : MultipartForm(randomBoundary) {}

MultipartForm::MultipartForm(BoundaryMaker makeBoundary) : makeBoundary_(std::move(makeBoundary)) {}

void MultipartForm::addField(std::string_view name, std::string_view value) {
    parts_.push_back(disposition(name) + "\r\n\r\n" + std::string(value));
}

void MultipartForm::addFile(std::string_view name, std::string_view fileName,
                            std::string_view contentType, std::span<const std::byte> data) {
    parts_.push_back(disposition(name) + "; filename=\"" + escaped(fileName) +
                     "\"\r\nContent-Type: " + std::string(contentType) + "\r\n\r\n" + toText(data));
}

std::string MultipartForm::freeBoundary() const {
    std::string boundary;
    do {
        boundary = makeBoundary_();
    } while (std::any_of(parts_.begin(), parts_.end(), [&boundary](const std::string& part) {
        return part.find(boundary) != std::string::npos;
    }));
    return boundary;
}

MultipartForm::Encoded MultipartForm::encode() const {
    const auto boundary = freeBoundary();
    std::string body;
    for (const auto& part : parts_)
        body.append("--").append(boundary).append("\r\n").append(part).append("\r\n");
    body += "--" + boundary + "--\r\n";
    return {"multipart/form-data; boundary=" + boundary, toBytes(body)};
}

}  // namespace supportsdk
