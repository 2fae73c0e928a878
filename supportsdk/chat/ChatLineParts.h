#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "supportsdk/platform/Clock.h"

namespace supportsdk {

class QuorrandChatMessage;

/// What of a line a person can tap.
enum class ChatLinePart { message, attachment, kb, avatar };

// The parts that a line is drawn with, as the list needs to know them: in points, 0 until somebody
// draws them.

struct ChatCellSize {
    double width = 0;
    double height = 0;

    bool operator==(const ChatCellSize&) const = default;
};

struct QDChatMessageView {
    double height = 0;
};

struct QDChatAttachmentView {
    /// Previews are pictures of 100 by 100.
    double height = 100;
};

struct QDKBView {
    double height = 0;
};

/// A place in the list: a section for each group of lines, whose item 0 is the header and whose
/// item n is line n - 1, and one section of one item for the typing indicator while it shows.
struct ChatIndexPath {
    std::size_t section = 0;
    std::size_t item = 0;

    bool operator==(const ChatIndexPath&) const = default;
};

// What the list shows at such a place.

struct QDChatTypingCollectionViewCell {
    static constexpr double height = 40;

    /// The engine's `typingType`.
    std::int32_t type = 0;
};

struct QDChatHeaderCollectionViewCell {
    static constexpr double height = 28;

    /// Of the group's first line.
    std::optional<Clock::Time> date;
};

struct QDChatCollectionViewCell {
    /// Never null.
    std::shared_ptr<QuorrandChatMessage> message;
    /// What stands above another's line: the sender's name.
    std::string username;
};

using ChatCell = std::variant<QDChatTypingCollectionViewCell, QDChatHeaderCollectionViewCell,
                              QDChatCollectionViewCell>;

}  // namespace supportsdk
