#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// The credential block that an issue carries, so that the chat can log in: Base64 of a JSON object
/// ("comm_id", "jid", "password", "host", "port", "resource"), filled up to whole blocks and
/// encrypted with AES-256-ECB under the API key. Pure; any thread.

/// Opens a block. Null when it is not Base64, not whole blocks, or not JSON under that key.
std::optional<Json> openCredentialBlock(std::string_view block, std::string_view key);

/// Reads the decrypted bytes: ASCII only, less every tab and zero byte, less blanks at both ends.
/// Null when the rest is not a JSON object.
std::optional<Json> readCredentials(std::span<const std::byte> plaintext);

}  // namespace supportsdk
