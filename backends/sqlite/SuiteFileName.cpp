#include "backends/sqlite/SuiteFileName.h"

#include <openssl/evp.h>

#include <array>
#include <span>

namespace supportsdk {
namespace {

// Leaves room below the usual 255 bytes for what is put behind it.
constexpr std::size_t kMaximumLength = 150;

void appendHex(std::string& to, unsigned char byte) {
    constexpr const char* kDigits = "0123456789abcdef";
    to += kDigits[byte >> 4];
    to += kDigits[byte & 15];
}

bool isPlain(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '.' ||
           c == '-' || c == '_';
}

std::string digest(const std::string& text) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> bytes{};
    unsigned int size = 0;
    EVP_Digest(text.data(), text.size(), bytes.data(), &size, EVP_sha256(), nullptr);
    std::string hex;
    for (const unsigned char byte : std::span(bytes).first(size)) appendHex(hex, byte);
    return hex;
}

}  // namespace

std::string suiteFileName(const std::string& suite) {
    if (suite.empty()) return "standard.sqlite";
    std::string name = "suite-";
    for (const char c : suite) {
        if (isPlain(c)) {
            name += c;
        } else {
            name += '%';
            appendHex(name, static_cast<unsigned char>(c));
        }
    }
    if (name.size() > kMaximumLength) name = "long-" + digest(suite);
    return name + ".sqlite";
}

}  // namespace supportsdk
