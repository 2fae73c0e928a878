#pragma once

namespace supportsdk {

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

}  // namespace supportsdk
