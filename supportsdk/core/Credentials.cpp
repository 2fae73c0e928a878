#include "supportsdk/core/Credentials.h"

#include <algorithm>
#include <string>

#include "supportsdk/core/Ciphers.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk {

std::optional<Json> openCredentialBlock(std::string_view block, std::string_view key) {
    const auto ciphertext = base64Decode(block);
    if (!ciphertext) return std::nullopt;
    const auto plaintext = decryptAes256Ecb(*ciphertext, key, LongKey::cut);
    return plaintext ? readCredentials(*plaintext) : std::nullopt;
}

std::optional<Json> readCredentials(std::span<const std::byte> plaintext) {
    const bool isAscii = std::all_of(plaintext.begin(), plaintext.end(),
                                     [](std::byte octet) { return octet < std::byte{0x80}; });
    if (!isAscii) return std::nullopt;
    std::string text = toText(plaintext);
    // The cipher has no padding of its own: what fills the last block is tabs, zero bytes or
    // blanks.
    std::erase_if(text, [](char letter) { return letter == '\t' || letter == '\0'; });
    text.erase(0, text.find_first_not_of(' '));
    text.erase(text.find_last_not_of(' ') + 1);
    auto credentials = parseJson(text);
    return credentials && credentials->is_object() ? std::move(credentials) : std::nullopt;
}

}  // namespace supportsdk
