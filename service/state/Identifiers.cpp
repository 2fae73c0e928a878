#include "service/state/Identifiers.h"

#include <openssl/rand.h>
#include <openssl/sha.h>

#include <array>
#include <cstdio>
#include <ctime>
#include <span>
#include <vector>

namespace supportsdk::service {

namespace {
std::string hex(std::span<const unsigned char> bytes) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const unsigned byte : bytes) {
        text += digits[byte >> 4U];
        text += digits[byte & 15U];
    }
    return text;
}
}  // namespace

std::string randomHex(std::size_t bytes) {
    std::vector<unsigned char> random(bytes);
    RAND_bytes(random.data(), static_cast<int>(bytes));
    return hex(random);
}

std::string sha256Hex(std::string_view bytes) {
    std::array<unsigned char, SHA256_DIGEST_LENGTH> digest{};
    SHA256(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), digest.data());
    return hex(digest);
}

std::string dateTimeText(Time time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm fields{};
    gmtime_r(&seconds, &fields);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &fields);
    return text.data();
}

std::string preciseDateTimeText(Time time) {
    const auto whole = std::chrono::floor<std::chrono::seconds>(time);
    const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(time - whole);
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), ".%03d", static_cast<int>(rest.count()));
    return dateTimeText(whole) + text.data();
}

}  // namespace supportsdk::service
