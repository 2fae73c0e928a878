#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
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

/// What a list shows of its lines: those of participants in order of their date, those of one date
/// in order of arrival, and a new group wherever more than 120 seconds lie between two lines. A
/// line without a date counts as one of 1970. Main thread.
class SUPPORTSDK_API ChatGroups {
 public:
    using Message = std::shared_ptr<QuorrandChatMessage>;
    /// Never empty.
    using Group = std::vector<Message>;

    /// Nobody takes part once `participants` is gone.
    explicit ChatGroups(std::weak_ptr<const ChatParticipants> participants);

    [[nodiscard]] const std::vector<Group>& all() const { return groups_; }

    /// Groups `lines`, which stand in order of arrival and of which only the last one is new: it
    /// goes to its place, in constant time if that is the end. A change of the participants, and
    /// what invalidate() was told of, costs a rebuild.
    void addLast(const std::vector<Message>& lines);
    /// Whether nothing has changed since they were built.
    [[nodiscard]] bool isCurrent() const;
    /// Groups `lines` anew.
    void rebuild(const std::vector<Message>& lines);
    /// The lines have changed otherwise. The groups stay as they are until the next operation.
    void invalidate() { revision_.reset(); }

 private:
    void insert(const Message& line);

    const std::weak_ptr<const ChatParticipants> participants_;
    /// Of the time when the groups were built; nothing while they are outdated.
    std::optional<std::uint64_t> revision_;
    std::vector<Group> groups_;
};

}  // namespace supportsdk
