#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace supportsdk {

class QuorrandChatMessage;
class Stanza;

/// A room, and the conversation that is held in it.
struct ChatPlace {
    std::string room;
    std::optional<std::string> conversation;

    bool operator==(const ChatPlace&) const = default;
};

/// Bridges the gap between losing a room and being back in it: keeps the lines that were known, as
/// the join empties the list and the room replays no more than its newest ones, and follows that
/// replay to its end. Main thread.
class RoomRecovery {
 public:
    using Lines = std::vector<std::shared_ptr<QuorrandChatMessage>>;

    /// The room is gone without anybody having asked for it. `lines` are all that is known of it.
    void roomWasLost(ChatPlace place, Lines lines);

    /// In the room; its history follows. Lines of another place are forgotten.
    void roomWasJoined(const ChatPlace& place);

    /// Nobody wants the room's lines any more, or its history followed.
    void forget() { *this = {}; }

    /// From the join to the end of the room's history.
    [[nodiscard]] bool isReplaying() const { return replaying_; }

    /// The kept lines of the room that was joined; empty from the second call on.
    [[nodiscard]] Lines takeLines();

    /// A line of the history has come; `known` when it had been there before.
    void didReplay(bool known);

    /// The history is over. False when there may be a gap between the lines that were known and
    /// the oldest one that was replayed.
    [[nodiscard]] bool endReplay();

    [[nodiscard]] std::size_t replayed() const { return replayed_; }

 private:
    std::optional<ChatPlace> place_;
    Lines lines_;
    bool replaying_ = false;
    bool hadLines_ = false;
    std::size_t replayed_ = 0;
    std::size_t known_ = 0;
};

/// Whether the history of a room is over with this groupchat message: it is the subject, which
/// comes right behind the history (XEP-0045, 7.2.15), or it is live.
[[nodiscard]] bool endsHistory(const Stanza& message);

}  // namespace supportsdk
