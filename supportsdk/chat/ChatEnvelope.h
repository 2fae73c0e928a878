#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// What agents and bots send in place of plain text, read into values. Texts are absent when the
/// envelope has none, or something else in their place.
struct ChatEnvelope {
    /// "" when the envelope has no message.
    std::string text;

    // The context. An invitation to a call names its sender by another key, because its "from" is
    // the call.
    std::optional<std::string> from;
    std::optional<std::string> fromName;
    std::optional<std::string> avatar;
    std::optional<std::string> callId;

    std::optional<std::string> preview;
    std::optional<std::string> url;

    /// An array, its entries unchecked.
    std::optional<Json> actions;

    std::optional<std::string> kbTitle;
    std::optional<std::string> kbPreview;
    std::optional<double> kbPreviewLength;
    std::optional<std::string> kbId;
};

/// Text that is shown as it stands.
struct PlainChatText {};
/// JSON that is no line: no object, of no kind that is shown, or unsigned.
struct InvalidChatText {};

using ParsedChatText = std::variant<PlainChatText, ChatEnvelope, InvalidChatText>;

/// Reads the text of a message. Notifications are envelopes only with `showNotifications`. Any
/// thread.
[[nodiscard]] ParsedChatText parseChatText(std::string_view text, bool showNotifications);

}  // namespace supportsdk
