#include "supportsdk/core/Ciphers.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>

namespace supportsdk {

namespace {

constexpr std::size_t keyLength = 32;
constexpr std::size_t blockLength = 16;

const unsigned char* octets(const void* data) {
    return static_cast<const unsigned char*>(data);
}

/// The zero-filled buffer that a key is copied into; wiped when done with.
struct KeyBuffer {
    std::array<unsigned char, keyLength + 1> bytes{};

    KeyBuffer(std::string_view key, LongKey longKey) {
        if (key.size() > keyLength && longKey == LongKey::dropped) return;
        std::copy_n(key.begin(), std::min(key.size(), keyLength), bytes.begin());
    }
    ~KeyBuffer() { OPENSSL_cleanse(bytes.data(), bytes.size()); }
    KeyBuffer(const KeyBuffer&) = delete;
    KeyBuffer& operator=(const KeyBuffer&) = delete;
};

struct Cipher {
    const EVP_CIPHER* kind;
    bool encrypts;
    bool pads;
    const unsigned char* iv;
};

std::optional<Bytes> run(const Cipher& cipher, std::span<const std::byte> data,
                         const KeyBuffer& key) {
    if (data.size() > std::numeric_limits<int>::max() - blockLength) return std::nullopt;
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(
        EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    Bytes result(data.size() + blockLength);
    auto* out = reinterpret_cast<unsigned char*>(result.data());
    int body = 0;
    int rest = 0;
    const bool worked = context &&
                        EVP_CipherInit_ex2(context.get(), cipher.kind, key.bytes.data(), cipher.iv,
                                           cipher.encrypts ? 1 : 0, nullptr) == 1 &&
                        EVP_CIPHER_CTX_set_padding(context.get(), cipher.pads ? 1 : 0) == 1 &&
                        EVP_CipherUpdate(context.get(), out, &body, octets(data.data()),
                                         static_cast<int>(data.size())) == 1 &&
                        EVP_CipherFinal_ex(context.get(), out + body, &rest) == 1;
    if (!worked) return std::nullopt;
    result.resize(static_cast<std::size_t>(body) + static_cast<std::size_t>(rest));
    return result;
}

}  // namespace

std::optional<Bytes> decryptAes256Ecb(std::span<const std::byte> data, std::string_view key,
                                      LongKey longKey) {
    return run({EVP_aes_256_ecb(), false, false, nullptr}, data, KeyBuffer(key, longKey));
}

std::optional<Bytes> decryptAes256Cbc(std::span<const std::byte> data, std::string_view key,
                                      LongKey longKey, std::span<const std::byte, 16> iv) {
    return run({EVP_aes_256_cbc(), false, true, octets(iv.data())}, data, KeyBuffer(key, longKey));
}

std::optional<Bytes> encryptAes256Cbc(std::span<const std::byte> data, std::string_view key,
                                      LongKey longKey, std::span<const std::byte, 16> iv) {
    return run({EVP_aes_256_cbc(), true, true, octets(iv.data())}, data, KeyBuffer(key, longKey));
}

Bytes hmacSha256(std::string_view text, std::string_view key) {
    Bytes digest(EVP_MAX_MD_SIZE);
    unsigned int length = 0;
    // A null key would mean "the key of the last call", an empty one is what is wanted.
    HMAC(EVP_sha256(), key.empty() ? "" : key.data(), static_cast<int>(key.size()),
         octets(text.data()), text.size(), reinterpret_cast<unsigned char*>(digest.data()),
         &length);
    digest.resize(length);
    return digest;
}

std::string md5Hex(std::string_view text) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    std::size_t length = 0;
    EVP_Q_digest(nullptr, "MD5", nullptr, text.data(), text.size(), digest.data(), &length);
    constexpr std::string_view digits = "0123456789abcdef";
    std::string hex;
    for (const auto octet : std::span(digest).first(length)) {
        hex += digits[octet >> 4U];
        hex += digits[octet & 0x0FU];
    }
    return hex;
}

std::string base64Encode(std::span<const std::byte> data) {
    // OpenSSL ends the text with a zero byte, for which std::string has room of its own.
    std::string text((data.size() + 2) / 3 * 4, '\0');
    EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()), octets(data.data()),
                    static_cast<int>(data.size()));
    return text;
}

std::optional<Bytes> base64Decode(std::string_view text) {
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    if (text.size() % 4 != 0 || text.size() > std::numeric_limits<int>::max()) return std::nullopt;
    const auto symbols = std::min(text.find_first_not_of(alphabet), text.size());
    const auto padding = text.substr(symbols);
    if (padding != "" && padding != "=" && padding != "==") return std::nullopt;
    Bytes data(text.size() / 4 * 3);
    if (EVP_DecodeBlock(reinterpret_cast<unsigned char*>(data.data()), octets(text.data()),
                        static_cast<int>(text.size())) < 0) {
        return std::nullopt;
    }
    data.resize(data.size() - padding.size());
    return data;
}

}  // namespace supportsdk
