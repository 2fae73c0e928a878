#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "supportsdk/platform/Values.h"

namespace supportsdk::service {

struct Occupant {
    std::string nick;
    /// Bare JID.
    std::string account;
};

/// Something that happened in a room.
struct RoomEvent {
    enum class Kind { message, joined, left };

    std::uint64_t sequence = 0;
    Kind kind = Kind::message;
    /// Bare JID.
    std::string room;
    std::string nick;
    /// Bare JID; "" for what was said through say().
    std::string account;
    std::chrono::system_clock::time_point time;
    /// The message as the room sent it; "" for joined and left.
    std::string xml;
};

/// A place in the stream of room events. Counting starts anew, in a new epoch, whenever the server
/// is started; a default cursor stands before everything.
struct RoomCursor {
    std::string epoch;
    std::uint64_t after = 0;
};

struct RoomEvents {
    std::vector<RoomEvent> events;
    /// Where to go on reading.
    RoomCursor next;
};

/// Steers the accounts and rooms of a ProsodyServer. Rooms are given by bare JID, which must lie in
/// the server's rooms domain. Every operation blocks for one exchange over loopback (milliseconds)
/// and fails when the server is down or refuses. Any thread, also several at once.
class ProsodyControl {
 public:
    ProsodyControl(std::uint16_t port, std::string host, std::string token);

    /// Creates an account, or sets the password of one that exists. `account` is a bare JID.
    [[nodiscard]] bool registerAccount(const std::string& account, const std::string& password);

    /// Makes a room that stays when its last occupant leaves; true when there is one already.
    [[nodiscard]] bool createRoom(const std::string& room);

    /// Everybody is told and leaves.
    [[nodiscard]] bool destroyRoom(const std::string& room, const std::string& reason = {});

    /// Sends stanzas to everybody in the room as if from the occupant `nick`, who need not be
    /// there. Each is a whole element; "from" is set, and "type" too on a message without one.
    /// Messages with a body enter the room's history. Nothing is sent when one is malformed.
    [[nodiscard]] bool say(const std::string& room, const std::string& nick,
                           const std::vector<std::string>& stanzas);

    /// Nothing when there is no such room.
    [[nodiscard]] std::optional<std::vector<Occupant>> occupants(const std::string& room);

    /// Removes an occupant (XEP-0045, status 307).
    [[nodiscard]] bool kick(const std::string& room, const std::string& nick,
                            const std::string& reason = {});

    /// Puts occupants with nobody behind them into the room. Those who are there are not told.
    [[nodiscard]] bool occupy(const std::string& room, const std::vector<std::string>& nicks);

    /// Whoever joins next is told `count` old lines of the occupant `nick`, whatever it asks for.
    [[nodiscard]] bool replay(const std::string& room, const std::string& nick, int count);

    /// Closes the connections of a bare or full JID without a stream's end; how many there were.
    [[nodiscard]] std::optional<int> cut(const std::string& jid);

    /// The events of all rooms behind `cursor`, oldest first; waits up to `wait` for the first. A
    /// cursor of an earlier epoch counts as a default one. The server keeps the last 10,000.
    [[nodiscard]] std::optional<RoomEvents> events(const RoomCursor& cursor,
                                                   std::chrono::milliseconds wait);

 private:
    [[nodiscard]] std::optional<Json> call(const Json& request,
                                           std::chrono::milliseconds wait = {}) const;

    std::uint16_t port_;
    std::string host_;
    std::string token_;
};

}  // namespace supportsdk::service
