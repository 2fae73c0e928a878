#include "supportsdk/core/Url.h"

#include <cstddef>

#include "supportsdk/core/LowerCased.h"

namespace supportsdk {

namespace {

constexpr std::string_view allowed =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~:/?#[]@!$&'()*+,;=%";
constexpr std::string_view unreserved = allowed.substr(0, allowed.find(':'));

}  // namespace

bool isUrl(std::string_view text) {
    constexpr std::string_view hexadecimal = "0123456789ABCDEFabcdef";
    if (text.empty() || text.find_first_not_of(allowed) != std::string_view::npos) return false;
    for (auto at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1)) {
        const auto digits = text.substr(at + 1, 2);
        if (digits.size() < 2 || digits.find_first_not_of(hexadecimal) != std::string_view::npos)
            return false;
    }
    return true;
}

bool isWebAddress(std::string_view address) {
    constexpr std::string_view mark = "://";
    const auto end = address.find(mark);
    if (end == std::string_view::npos || end + mark.size() == address.size()) return false;
    const auto scheme = lowerCased(std::string(address.substr(0, end)));
    return scheme == "http" || scheme == "https";
}

std::string percentEncoded(std::string_view text, std::string_view plain) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    for (const char letter : text) {
        if (unreserved.find(letter) != std::string_view::npos ||
            plain.find(letter) != std::string_view::npos) {
            encoded += letter;
            continue;
        }
        const auto octet = static_cast<unsigned char>(letter);
        encoded += {'%', digits[octet >> 4U], digits[octet & 0x0FU]};
    }
    return encoded;
}

}  // namespace supportsdk
