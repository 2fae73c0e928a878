#include "supportsdk/chat/QuorrandChatMessage.h"

#include <algorithm>

#include "supportsdk/chat/ActionPermission.h"
#include "supportsdk/chat/ChatDates.h"
#include "supportsdk/chat/ChatEnvelope.h"
#include "supportsdk/chat/QDChatActionButton.h"
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

void replaceIfPresent(std::optional<std::string>& field, std::optional<std::string> value) {
    if (value) field = std::move(value);
}

}  // namespace

QuorrandChatMessage::QuorrandChatMessage(QuorrandChat& chat)
    : chat_(chat.weak_from_this()), platform_(chat.platform) {}

QuorrandChatMessage::~QuorrandChatMessage() = default;

std::shared_ptr<QuorrandChatMessage> QuorrandChatMessage::createWithXMPPMessage(
    QuorrandChat& chat, std::shared_ptr<const Stanza> stanza) {
    auto message = createBasicWithXMPPMessage(chat, std::move(stanza));
    if (!message->date) message->date = message->platform_->clock->now();
    message->completeMessage();
    return message;
}

std::shared_ptr<QuorrandChatMessage> QuorrandChatMessage::createBasicWithXMPPMessage(
    QuorrandChat& chat, std::shared_ptr<const Stanza> stanza) {
    std::shared_ptr<QuorrandChatMessage> message(new QuorrandChatMessage(chat));
    message->readStanza(std::move(stanza));
    return message;
}

std::shared_ptr<QuorrandChatMessage> QuorrandChatMessage::createWithTranscript(QuorrandChat& chat,
                                                                               const Json& record) {
    std::shared_ptr<QuorrandChatMessage> message(new QuorrandChatMessage(chat));
    message->fromName = stringForKey(record, "from");
    message->text = stringForKey(record, "message");
    message->avatar = stringForKey(record, "from_avatar");
    if (const auto sent = stringForKey(record, "sent"))
        message->date = dateFromFullDateString(*chat.platform->clock, *sent);
    message->completeTranscript();
    return message;
}

std::shared_ptr<QuorrandChatMessage> QuorrandChatMessage::createWithDict(QuorrandChat& chat,
                                                                         const Json& dictionary) {
    std::shared_ptr<QuorrandChatMessage> message(new QuorrandChatMessage(chat));
    message->setDict(dictionary);
    message->completeMessage();
    return message;
}

void QuorrandChatMessage::readStanza(std::shared_ptr<const Stanza> stanza) {
    id = stanza->attribute("id");
    type = stanza->attribute("type");
    if (auto sender = resourceOf(stanza->attribute("from")))
        from = sender->substr(0, sender->find(';'));
    fromName = from;
    fromMention = from;
    text = stanza->childText("body");
    xml = stanza->xml();
    chatState_ = chatState(*stanza);
    date = delayedDeliveryDate(*stanza);
    isDelayed = date.has_value();
    xmppMessage = std::move(stanza);
}

void QuorrandChatMessage::completeMessage() {
    isValidMessage = validateMessage();
    setSenderInformation();
    trimText();
    const auto& clock = *platform_->clock;
    date = truncatedToMinute(clock, date.value_or(clock.now()));
    calculateId();
    const auto chat = chat_.lock();
    isMe = chat && from == chat->me;
    prepareChatButtons();
    determineMessageType();
}

void QuorrandChatMessage::completeTranscript() {
    setSenderInformation();
    trimText();
    calculateId();
    const auto chat = chat_.lock();
    isMe = chat && from == chat->me;
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
    if (hasChatState() && !hasComposingChatState()) return false;
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
    if (envelope.actions) readActions(*envelope.actions);
    replaceIfPresent(kb_title, std::move(envelope.kbTitle));
    if (envelope.kbPreview) {
        kb_preview = URLDecodeString(*envelope.kbPreview);
        if (!kb_preview || kb_preview->empty()) {
            kb_preview =
                platform_->localizer->localized("Click here to go to the knowledge base article.");
        }
    }
    if (envelope.kbPreviewLength) kb_preview_length = envelope.kbPreviewLength;
    replaceIfPresent(kb_id, std::move(envelope.kbId));
}

void QuorrandChatMessage::readActions(const Json& actions) {
    const auto chat = chat_.lock();
    if (!chat) return;
    buttonActions = Json::array();
    for (const auto& action : actions) {
        if (!action.is_object()) continue;
        const auto* permissions = valueForKey(action, "perms");
        // Agents write null to hide a button, and leave the key out to show it to everybody.
        if (permissions && permissions->is_null()) continue;
        if (!isPermitted(permissions, chat->userPermissions)) continue;
        if (const auto key = stringForKey(action, "key")) std::erase(chat->selectedActions, *key);
        buttonActions->push_back(action);
    }
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
    constexpr auto blanks = " \t\n\v\f\r";
    const auto first = text->find_first_not_of(blanks);
    const auto last = text->find_last_not_of(blanks);
    text = first == std::string::npos ? "" : text->substr(first, last - first + 1);
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

void QuorrandChatMessage::prepareChatButtons() {
    const auto chat = chat_.lock();
    if (!chat || !buttonActions) return;
    for (const auto& action : *buttonActions) {
        auto button = std::make_shared<QDChatActionButton>(chat, action);
        button->handleButtonAction = [weakMessage = weak_from_this(), weakChat = chat_](
                                         const std::string& label,
                                         const std::optional<std::string>& address) {
            const auto message = weakMessage.lock();
            const auto engine = weakChat.lock();
            const auto listener = engine ? engine->delegate.lock() : nullptr;
            if (message && listener) listener->handleButtonAction(address, label, message);
        };
        chatActionButtons.push_back(std::move(button));
    }
}

void QuorrandChatMessage::disableChatActionButtons() {
    for (const auto& button : chatActionButtons) button->isEnabled = false;
}

}  // namespace supportsdk
