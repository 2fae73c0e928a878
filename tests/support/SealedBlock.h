#pragma once

#include <array>

#include "supportsdk/core/Ciphers.h"

namespace supportsdk::test {

/// Credentials as the service seals them: filled up with zeros to whole blocks, encrypted without
/// chaining or padding, in base64.
inline std::string sealedBlock(std::string plaintext, std::string_view key) {
    plaintext.resize((plaintext.size() + 15) / 16 * 16);
    constexpr std::array<std::byte, 16> zeros{};
    Bytes ciphertext;
    for (std::size_t at = 0; at < plaintext.size(); at += 16) {
        // A first block under a zero vector is what a block is without chaining.
        const auto block =
            encryptAes256Cbc(toBytes(plaintext.substr(at, 16)), key, LongKey::cut, zeros);
        ciphertext.insert(ciphertext.end(), block->begin(), block->begin() + 16);
    }
    return base64Encode(ciphertext);
}

}  // namespace supportsdk::test
