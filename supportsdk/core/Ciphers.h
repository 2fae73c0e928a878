#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// The cryptographic primitives of the kit. Pure; any thread. Null where the cipher refuses.

/// Whether a key that is longer than the cipher's 32 bytes is cut, or counts as no key at all
/// (32 zero bytes). A shorter one is always filled up with zero bytes; nothing is hashed.
enum class LongKey { cut, dropped };

/// AES-256 in ECB mode (NIST SP 800-38A) without padding: `data` must be whole blocks of 16 bytes,
/// and so is the result.
std::optional<Bytes> decryptAes256Ecb(std::span<const std::byte> data, std::string_view key,
                                      LongKey longKey);

/// AES-256 in CBC mode with PKCS#7 padding (RFC 5652, section 6.3).
std::optional<Bytes> decryptAes256Cbc(std::span<const std::byte> data, std::string_view key,
                                      LongKey longKey, std::span<const std::byte, 16> iv);
std::optional<Bytes> encryptAes256Cbc(std::span<const std::byte> data, std::string_view key,
                                      LongKey longKey, std::span<const std::byte, 16> iv);

/// HMAC-SHA-256 (RFC 2104) of `text` under `key`: 32 bytes.
Bytes hmacSha256(std::string_view text, std::string_view key);

/// MD5 (RFC 1321) in lower-case hexadecimal. A fingerprint that stored data and other clients
/// depend on, no protection.
std::string md5Hex(std::string_view text);

/// Standard Base64 (RFC 4648, section 4) without line breaks.
std::string base64Encode(std::span<const std::byte> data);
/// Strict: null when the text holds a character outside the alphabet, white space among them, or is
/// not padded to whole groups of four.
std::optional<Bytes> base64Decode(std::string_view text);

}  // namespace supportsdk
