#include "supportsdk/chat/ChatEnvelope.h"

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

ChatEnvelope readGeneralForm(const Json& json) {
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
    const auto* actions = valueForKey(json, "actions");
    if (actions && actions->is_array()) envelope.actions = *actions;
    envelope.kbTitle = stringForKey(kb, "title");
    envelope.kbPreview = stringForKey(kb, "preview");
    envelope.kbPreviewLength = numberForKey(kb, "preview_length");
    envelope.kbId = stringForKey(kb, "id");
    return envelope;
}

}  // namespace

ParsedChatText parseChatText(std::string_view text, bool showNotifications) {
    const auto json = parseJson(text);
    // A person who types 42 or true has typed JSON, and means text.
    if (!json || json->is_primitive()) return PlainChatText{};
    const auto secret = stringForKey(*json, "secret");
    const auto kind = secret ? messageKind(*secret) : std::nullopt;
    if (!kind) return InvalidChatText{};
    if (*kind == MessageKind::videoChat) return readVideoForm(*json);
    if (*kind == MessageKind::notification && !showNotifications) return InvalidChatText{};
    return readGeneralForm(*json);
}

}  // namespace supportsdk
