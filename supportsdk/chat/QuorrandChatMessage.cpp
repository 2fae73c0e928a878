#include "supportsdk/chat/QuorrandChatMessage.h"

#include <algorithm>

#include "supportsdk/chat/ActionPermission.h"
#include "supportsdk/chat/Blanks.h"
#include "supportsdk/chat/ChatDates.h"
#include "supportsdk/chat/ChatEnvelope.h"
#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/chat/xmpp/DelayedDelivery.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/platform/Stanza.h"

namespace supportsdk {

namespace {

/// The resource of a JID (RFC 7622, 3.4); nothing when it has none.
std::optional<std::string> resourceOf(const std::optional<std::string>& jid) {
    const auto slash = jid ? jid->find('/') : std::string::npos;
    if (slash == std::string::npos) return std::nullopt;
    return jid->substr(slash + 1);
}

/// A room's stanza has space for a hundred thousand buttons that the user may not press.
constexpr std::size_t maximumEntries = 5000;

template <typename Field>
void replaceIfPresent(Field& field, std::optional<std::string> value) {
    if (value) field = std::move(value);
}

}  // namespace

QuorrandChatMessage::QuorrandChatMessage(QuorrandChat& chat)
    : chat_(chat.weak_from_this()), platform_(chat.platform) {}

QuorrandChatMessage::~QuorrandChatMessage() = default;

std::shared_ptr<QuorrandChatMessage> QuorrandChatMessage::create(QuorrandChat& chat) {
    return std::shared_ptr<QuorrandChatMessage>(new QuorrandChatMessage(chat));
}

std::shared_ptr<QuorrandChatMessage> QuorrandChatMessage::createWithXMPPMessage(
    QuorrandChat& chat, std::shared_ptr<const Stanza> stanza) {
    auto message = createBasicWithXMPPMessage(chat, std::move(stanza));
    if (!message->date) message->date = message->platform_->clock->now();
    message->completeMessage();
    return message;
}

std::shared_ptr<QuorrandChatMessage> QuorrandChatMessage::createBasicWithXMPPMessage(
    QuorrandChat& chat, std::shared_ptr<const Stanza> stanza) {
    auto message = create(chat);
    message->readStanza(*stanza);
    return message;
}

std::shared_ptr<QuorrandChatMessage> QuorrandChatMessage::createWithTranscript(QuorrandChat& chat,
                                                                               const Json& record) {
    auto message = create(chat);
    message->fromName = stringForKey(record, "from");
    message->text = stringForKey(record, "message");
    message->avatar = stringForKey(record, "from_avatar");
    if (const auto sent = stringForKey(record, "sent"))
        message->date = message->getDateFromFullDateString(*sent);
    message->completeTranscript();
    return message;
}

std::shared_ptr<QuorrandChatMessage> QuorrandChatMessage::createWithDict(QuorrandChat& chat,
                                                                         const Json& dictionary) {
    auto message = create(chat);
    message->setDict(dictionary);
    message->completeMessage();
    return message;
}

void QuorrandChatMessage::readStanza(const Stanza& stanza) {
    id = stanza.attribute("id");
    type = stanza.attribute("type");
    if (auto sender = resourceOf(stanza.attribute("from")))
        from = sender->substr(0, sender->find(';'));
    fromName = from;
    fromMention = from;
    text = stanza.childText("body");
    xml = stanza.xml();
    chatStates_ = chatStates(stanza);
    hasStanza_ = true;
    date = delayedDeliveryDate(stanza);
    isDelayed = date.has_value();
}

std::shared_ptr<const Stanza> QuorrandChatMessage::xmppMessage() const {
    return hasStanza_ && xml ? Stanza::parse(*xml) : nullptr;
}

void QuorrandChatMessage::completeMessage() {
    isValidMessage = validateMessage();
    setSenderInformation();
    trimText();
    const auto& clock = *platform_->clock;
    date = truncatedToMinute(clock, date.value_or(clock.now()));
    calculateId();
    isMe = isMine();
    getPreviewImage();
    getAvatarForSender(*from);
    chooseTextColor();
    prepareChatButtons();
    determineMessageType();
    if (isAttachmentMessage()) attachmentView.emplace();
    if (text && !text->empty()) messageView.emplace();
    if (isKBMessage()) kbView.emplace();
}

void QuorrandChatMessage::completeTranscript() {
    setSenderInformation();
    trimText();
    calculateId();
    isMe = isMine();
    getAvatarWithUrl(avatar);
    chooseTextColor();
    messageView.emplace();
}

bool QuorrandChatMessage::isMine() const {
    const auto chat = chat_.lock();
    return chat && from == chat->me;
}

bool QuorrandChatMessage::isGroupChat() const {
    constexpr std::string_view groupchat = "groupchat";
    return type && std::equal(type->begin(), type->end(), groupchat.begin(), groupchat.end(),
                              [](char left, char right) {
                                  return left == right ||
                                         (left >= 'A' && left <= 'Z' && left - 'A' + 'a' == right);
                              });
}

bool QuorrandChatMessage::validateMessage() {
    if (!isGroupChat() || !text) return false;
    if (hasChatStateBesidesComposing()) return false;
    auto parsed = parseChatText(*text, showNotifications);
    if (auto* envelope = std::get_if<ChatEnvelope>(&parsed)) readEnvelope(std::move(*envelope));
    return !std::holds_alternative<InvalidChatText>(parsed);
}

void QuorrandChatMessage::readEnvelope(ChatEnvelope envelope) {
    text = std::move(envelope.text);
    replaceIfPresent(from, std::move(envelope.from));
    replaceIfPresent(fromName, std::move(envelope.fromName));
    replaceIfPresent(avatar, std::move(envelope.avatar));
    replaceIfPresent(callId, std::move(envelope.callId));
    replaceIfPresent(preview, std::move(envelope.preview));
    replaceIfPresent(url, std::move(envelope.url));
    if (envelope.actions) readActions(std::move(*envelope.actions));
    replaceIfPresent(kb_title, std::move(envelope.kbTitle));
    if (envelope.kbPreview) {
        auto decoded = URLDecodeString(*envelope.kbPreview);
        kb_preview = decoded && !decoded->empty()
                         ? *std::move(decoded)
                         : platform_->localizer->localized(
                               "Click here to go to the knowledge base article.");
    }
    if (envelope.kbPreviewLength) kb_preview_length = envelope.kbPreviewLength;
    replaceIfPresent(kb_id, std::move(envelope.kbId));
}

void QuorrandChatMessage::readActions(Json actions) {
    const auto chat = chat_.lock();
    if (!chat) return;
    buttonActions = Json::array();
    std::size_t lookedAt = 0;
    for (auto& action : actions) {
        if (++lookedAt > maximumEntries || buttonActions->size() == maximumActions) {
            platform_->log->write("a chat line has too many buttons; the rest are left out");
            return;
        }
        if (!action.is_object()) continue;
        const auto* permissions = valueForKey(action, "perms");
        // Agents write null to hide a button, and leave the key out to show it to everybody.
        if (permissions && permissions->is_null()) continue;
        if (!isPermitted(permissions)) continue;
        if (const auto key = stringForKey(action, "key")) std::erase(chat->selectedActions, *key);
        buttonActions->push_back(std::move(action));
    }
}

bool QuorrandChatMessage::isPermitted(const Json* permissions) const {
    const auto chat = chat_.lock();
    if (!chat) return supportsdk::isPermitted(permissions, std::nullopt);
    return supportsdk::isPermitted(permissions, chat->userPermissions);
}

void QuorrandChatMessage::setSenderInformation() {
    if (!from) {
        from = "";
        fromName = "";
    } else if (const auto chat = chat_.lock()) {
        fromName = chat->getInfoType("name", from);
    }
}

void QuorrandChatMessage::trimText() {
    if (!text) return;
    const auto kept = withoutOuterBlanksAndLineEnds(*text);
    if (kept.size() != text->size()) text = std::string(kept);
}

void QuorrandChatMessage::calculateId() {
    if (id && !id->empty()) return;
    id = MD5(from.value_or("") + text.value_or("") +
             (date ? dateText(*platform_->clock, *date) : ""));
    hasComputedId = true;
}

void QuorrandChatMessage::determineMessageType() {
    messageType = isCallInvitationMessage() ? ChatMessageType::CallInvitation
                  : isAttachmentMessage()   ? ChatMessageType::Attachment
                  : isKBMessage()           ? ChatMessageType::KnowledgeBase
                                            : ChatMessageType::Text;
}

}  // namespace supportsdk
