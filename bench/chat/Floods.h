#pragma once

#include <memory>
#include <string>
#include <vector>

#include "supportsdk/platform/Stanza.h"
#include "tests/backends/strophe/RawServer.h"

namespace supportsdk::bench {

inline constexpr const char* roomJid = "case-1@rooms.raw.test";
inline constexpr const char* occupant = "ann";

/// Lines of one room as they come over the stream.
struct Flood {
    const char* name;
    std::size_t count;
    /// Of one line.
    std::size_t bytes;
    std::string xml;
};

/// Plain lines of 260 bytes each, as everybody of the room says them while one is there; the
/// senders have no pictures.
[[nodiscard]] Flood plainFlood(std::size_t count);
/// The same as the room's history: with a stamp, five lines a minute.
[[nodiscard]] Flood historyFlood(std::size_t count);
/// The same with two emoticons in each.
[[nodiscard]] Flood emoticonFlood(std::size_t count);
/// The same from senders with pictures.
[[nodiscard]] Flood avatarFlood(std::size_t count);

/// Logs in, lets "ann" into the room, and sends the lines after the first private message.
[[nodiscard]] std::vector<test::RawServer::Line> scriptOf(const Flood& flood);
/// The plain lines from number `first` on, as stanzas that a stream has received.
[[nodiscard]] std::vector<std::shared_ptr<const Stanza>> plainStanzas(std::size_t first,
                                                                      std::size_t count);

/// What starts the flood.
inline constexpr const char* startSignal =
    "<message type='chat' to='ann@raw.test'><body>go</body></message>";

}  // namespace supportsdk::bench
