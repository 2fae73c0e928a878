#pragma once

#include <optional>

namespace supportsdk {

class Stanza;

/// What the sender is doing (XEP-0085).
enum class ChatState { active, composing, paused, inactive, gone };

/// The first chat state that `message` carries; nothing when it carries none. Any thread.
[[nodiscard]] std::optional<ChatState> chatState(const Stanza& message);

}  // namespace supportsdk
