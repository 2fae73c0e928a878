#pragma once

#include <optional>
#include <string>

namespace supportsdk::service {

/// What matters here in a room message.
struct RoomMessage {
    std::string id;
    std::optional<std::string> body;
    /// "composing", "paused", ... (XEP-0085); "" without one.
    std::string chatState;
};

/// Nothing when `xml` is not one well-formed element.
std::optional<RoomMessage> readRoomMessage(const std::string& xml);

/// A groupchat message for a room to send on. Empty `id` gives a random one.
std::string writeRoomMessage(const RoomMessage& message);

/// The presence of an occupant (XEP-0045), or its end.
std::string writePresence(bool available);

}  // namespace supportsdk::service
