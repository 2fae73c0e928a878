#pragma once

#include <cstdint>

namespace supportsdk {

class Stanza;

/// What the sender is doing (XEP-0085).
enum class ChatState : std::uint8_t {
    active = 1,
    composing = 2,
    paused = 4,
    inactive = 8,
    gone = 16
};

/// The chat states that one message carries: one at most, of senders that know the rules.
class ChatStates {
 public:
    void add(ChatState state) { bits_ |= static_cast<unsigned>(state); }
    [[nodiscard]] bool has(ChatState state) const {
        return (bits_ & static_cast<unsigned>(state)) != 0;
    }
    [[nodiscard]] bool isEmpty() const { return bits_ == 0; }
    /// Whether there is one besides `state`.
    [[nodiscard]] bool hasBesides(ChatState state) const {
        return (bits_ & ~static_cast<unsigned>(state)) != 0;
    }

 private:
    unsigned bits_ = 0;
};

/// Any thread.
[[nodiscard]] ChatStates chatStates(const Stanza& message);

}  // namespace supportsdk
