#pragma once

#include <optional>
#include <string_view>

namespace supportsdk {

/// The kinds of envelope that can be a line.
enum class MessageKind { videoChat, plain, attachment, extended, externalChat, kb, notification };

/// The kind whose word has `secret` as its digest (MD5, lower-case hexadecimal); nothing for any
/// other text. Any thread.
[[nodiscard]] std::optional<MessageKind> messageKind(std::string_view secret);

}  // namespace supportsdk
