#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "supportsdk/chat/ChatGroups.h"
#include "supportsdk/chat/ChatHistoryStore.h"
#include "supportsdk/chat/ChatLineParts.h"
#include "supportsdk/core/KeyedHash.h"
#include "supportsdk/platform/Export.h"

namespace supportsdk {

class QDChatCollectionView;
class QuorrandChat;

/// The lines of the current chat, and the groups that a list shows them in. The engine owns one,
/// which outlives screens, and is the data source of the lists that show it. Main thread.
class SUPPORTSDK_API QDChatViewModel : public std::enable_shared_from_this<QDChatViewModel> {
 public:
    using Message = ChatGroups::Message;
    using Group = ChatGroups::Group;

    // Names under which a list keeps its cells for reuse.
    static constexpr std::string_view typingCellIdentifier = "QDChatTypingCollectionViewCell";
    static constexpr std::string_view headerCellIdentifier = "QDChatHeaderCollectionViewCell";
    static constexpr std::string_view messageCellIdentifier = "QDChatCollectionViewCell";

    /// Nobody takes part, and nothing is stored, once the engine is gone.
    explicit QDChatViewModel(const std::weak_ptr<QuorrandChat>& engine);

    void setRoom(const std::optional<std::string>& room) { commId = room; }

    // --- Lines ---

    /// Takes a line, freezes the buttons of the earlier ones, adds it to the local history and
    /// regroups; drops a duplicate, and a line with a chat state besides composing. Takes
    /// constant time for a line that is the newest by date too. Null is ignored.
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
    /// The same, unless nobody has.
    void participantsDidChange();

    /// All lines, in order of arrival. Lines of people who are no participants stay here until they
    /// may be shown.
    [[nodiscard]] const std::vector<Message>& messages() const { return messages_; }
    /// What is shown of them.
    [[nodiscard]] const std::vector<Group>& messageGroups() const { return groups_.all(); }

    // --- Local history ---

    void useLocalHistory(bool isUsed) { isLocalHistory = isUsed; }
    /// Stores a line under the engine's `commId`; nothing without `isLocalHistory`, a line or a
    /// `commId`.
    void addHistoryEntry(const Message& message);
    /// Replaces the lines by what is stored for the engine's `commId`, only the last one with live
    /// buttons, and leaves the grouping to the next operation. Entries that are no dictionaries are
    /// left out. Without stored lines nothing changes; so it is with the first call, which empties
    /// the store (ChatHistoryStore::load()), and without `isLocalHistory` or a `commId`.
    void loadHistory();

    // --- The list's questions; a place that is not there gives 0 and nothing ---

    /// Becomes the list's data source, and tells it the cells' names.
    void setupCollectionView(QDChatCollectionView& list);
    [[nodiscard]] std::size_t numberOfSectionsInCollectionView() const;
    [[nodiscard]] std::size_t numberOfItemsInSection(std::size_t section) const;
    [[nodiscard]] std::optional<ChatCell> cellForItemAtIndexPath(const ChatIndexPath& path) const;
    /// In points, for a list of this width. A line remembers its size in `cellSize`.
    ChatCellSize sizeForItemAtIndexPath(const ChatIndexPath& path, double listWidth) const;
    /// What stands above a line: its sender's name among the participants, else the line's own.
    [[nodiscard]] std::string usernameOf(const QuorrandChatMessage& line) const;

    /// The conversation.
    std::optional<std::string> commId;
    /// Lines are kept on this device.
    bool isLocalHistory = false;

 private:
    enum class Place { none, typing, header, line };
    [[nodiscard]] Place placeAt(const ChatIndexPath& path) const;
    [[nodiscard]] const Message& lineAt(const ChatIndexPath& path) const;
    [[nodiscard]] double heightOf(const QuorrandChatMessage& line) const;
    void removeAll();

    using HeardLive = std::multimap<std::pair<std::string, std::string>, Message>;
    [[nodiscard]] HeardLive::const_iterator findHeardLive(const QuorrandChatMessage& message) const;
    void forgetHeardLive(const QuorrandChatMessage& message);

    const std::weak_ptr<QuorrandChat> engine_;
    std::vector<Message> messages_;
    ChatGroups groups_;
    ChatHistoryStore history_;
    std::unordered_set<std::string, KeyedHash> ids_;
    /// Restored lines, by sender and text, that the history may tell again under another id.
    HeardLive heardLive_;
};

}  // namespace supportsdk
