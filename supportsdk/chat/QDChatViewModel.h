#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/platform/Export.h"

namespace supportsdk {

/// Who takes part in the conversation, as the list needs to know it.
class ChatParticipants {
 public:
    virtual ~ChatParticipants() = default;

    /// Whether lines of this sender may be shown.
    [[nodiscard]] virtual bool isParticipant(const std::optional<std::string>& from) const = 0;

    /// Another number whenever an answer of isParticipant() may have changed.
    [[nodiscard]] virtual std::uint64_t participantsRevision() const = 0;
};

/// The lines of the current chat, and the groups that a list shows them in. The engine owns one,
/// which outlives screens. Main thread.
class SUPPORTSDK_API QDChatViewModel {
 public:
    using Message = std::shared_ptr<QuorrandChatMessage>;
    using Group = std::vector<Message>;

    /// Nobody takes part once `participants` is gone.
    explicit QDChatViewModel(std::weak_ptr<const ChatParticipants> participants);

    void setRoom(const std::optional<std::string>& room) { commId = room; }

    /// Takes a line, freezes the buttons of the earlier ones and regroups; drops a duplicate, and a
    /// line whose chat state is other than composing. Takes constant time for a line that is the
    /// newest by date too.
    void addMessage(const Message& message);
    /// Whether a line with the same id is here already.
    [[nodiscard]] bool isDuplicateMessage(const QuorrandChatMessage& message) const;

    /// Puts lines that were here before a lost connection back in front of those that have come
    /// since, without those whose id is here already, and regroups. Call it before the room's
    /// history is added: addMessage() then drops what isRestoredMessage() knows. Buttons stay as
    /// they are, but only those of the last line of all can be live.
    void restoreMessages(std::vector<Message> earlier);
    /// Whether a line of the room's history is a restored line over again although their ids
    /// differ. A line that comes without an id gets a digest that depends on the minute: of this
    /// computer's clock when it was heard live, of the server's when it is replayed. So lines of
    /// one sender and text at most a minute apart are the same one; each restored line is found
    /// once, for the same words may truly have been said twice.
    [[nodiscard]] bool isRestoredMessage(const QuorrandChatMessage& message) const;

    void clearMessages();
    /// The newest by arrival, shown or not; null when there is none.
    [[nodiscard]] Message lastMessage() const;
    /// Builds the groups anew: needed only when somebody has become a participant, or ceased to be
    /// one, and no line has come since.
    void groupMessages();

    /// All lines, in order of arrival. Lines of people who are no participants stay here until they
    /// may be shown.
    [[nodiscard]] const std::vector<Message>& messages() const { return messages_; }
    /// What is shown: lines in order of their date, those of one date in order of arrival, and a
    /// new group wherever more than 120 seconds lie between two lines.
    [[nodiscard]] const std::vector<Group>& messageGroups() const { return groups_; }

    /// The conversation.
    std::optional<std::string> commId;

 private:
    [[nodiscard]] bool isShown(const QuorrandChatMessage& message);
    void appendToGroups(const Message& message);
    using HeardLive = std::unordered_multimap<std::string, Message>;
    [[nodiscard]] HeardLive::const_iterator findHeardLive(const QuorrandChatMessage& message) const;
    void forgetHeardLive(const QuorrandChatMessage& message);

    const std::weak_ptr<const ChatParticipants> participants_;
    /// Of the time when the groups were built.
    std::uint64_t revision_ = 0;
    std::vector<Message> messages_;
    std::vector<Group> groups_;
    std::unordered_set<std::string> ids_;
    /// Restored lines, by sender and text, that the history may tell again under another id.
    HeardLive heardLive_;
};

}  // namespace supportsdk
