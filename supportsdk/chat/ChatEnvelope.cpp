#include "supportsdk/chat/ChatEnvelope.h"

#include <utility>

#include "supportsdk/chat/MessageKinds.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk {

namespace {

ChatEnvelope readVideoForm(const Json& json) {
    const auto& context = dictionaryForKey(json, "context");
    ChatEnvelope envelope;
    envelope.text = stringForKey(json, "message").value_or("");
    envelope.callId = stringForKey(context, "from");
    envelope.from = stringForKey(context, "from_user");
    envelope.fromName = stringForKey(context, "from_name");
    envelope.avatar = stringForKey(context, "from_avatar");
    return envelope;
}

ChatEnvelope readGeneralForm(Json& json) {
    const auto& context = dictionaryForKey(json, "context");
    const auto& attachment = dictionaryForKey(json, "attachment");
    const auto& kb = dictionaryForKey(json, "kb");
    ChatEnvelope envelope;
    envelope.text = stringForKey(json, "message").value_or("");
    envelope.from = stringForKey(context, "from");
    envelope.fromName = stringForKey(context, "from_name");
    envelope.avatar = stringForKey(context, "from_avatar");
    envelope.preview = stringForKey(attachment, "preview");
    envelope.url = stringForKey(attachment, "url");
    envelope.kbTitle = stringForKey(kb, "title");
    envelope.kbPreview = stringForKey(kb, "preview");
    envelope.kbPreviewLength = numberForKey(kb, "preview_length");
    envelope.kbId = stringForKey(kb, "id");
    const auto actions = json.find("actions");
    if (actions != json.end() && actions->is_array()) envelope.actions = std::move(*actions);
    return envelope;
}

/// Whether it can be an object or array of JSON, told without parsing what most people write.
bool beginsLikeAnEnvelope(std::string_view text) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    const auto first = text.find_first_not_of(" \t\n\r");
    return first != std::string_view::npos && (text[first] == '{' || text[first] == '[');
}

}  // namespace

ParsedChatText parseChatText(std::string_view text, bool showNotifications) {
    // A person who types 42 or true has typed JSON, and means text.
    if (!beginsLikeAnEnvelope(text)) return PlainChatText{};
    auto json = parseJson(text);
    if (!json) return PlainChatText{};
    const auto secret = stringForKey(*json, "secret");
    const auto kind = secret ? messageKind(*secret) : std::nullopt;
    if (!kind) return InvalidChatText{};
    if (*kind == MessageKind::videoChat) return readVideoForm(*json);
    if (*kind == MessageKind::notification && !showNotifications) return InvalidChatText{};
    return readGeneralForm(*json);
}

}  // namespace supportsdk
