#include "supportsdk/chat/QDChatViewModel.h"
#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/chat/xmpp/Roster.h"
#include "supportsdk/chat/xmpp/Stanzas.h"
#include "supportsdk/chat/xmpp/XmppLink.h"
#include "supportsdk/chat/xmpp/XmppRoom.h"
#include "supportsdk/core/NotificationCenter.h"

namespace supportsdk {

namespace {
// A ghost of one's own is gone within seconds once the server has noticed.
constexpr std::chrono::seconds rejoinInterval{3};
}  // namespace

void QuorrandChat::sendStanza(std::string xml) {
    if (link_) link_->send(std::move(xml));
}

bool QuorrandChat::isRoomJoined() const {
    return xmppRoom_ && xmppRoom_->isJoined();
}

std::shared_ptr<Stanza> QuorrandChat::historyStanza() const {
    return makeHistory();
}

void QuorrandChat::joinRoom(const std::optional<std::string>& roomJid,
                            const std::optional<std::string>& occupantNickname) {
    if (isRoomJoined() && roomJid == roomName) {
        joinWanted_ = true;
        return reportJoined(nullptr);
    }
    const bool isAnother = xmppRoom_ && xmppRoom_->jid() != roomJid;
    const auto notSent = isAnother ? giveUpRecovery() : SentLines::Texts{};
    if (isAnother) dropRoom();
    muc = roomJid;
    nickname = occupantNickname;
    joinWanted_ = true;
    rejoinTimer_.reset();
    xmppRoom_ = makeRoom(muc.value_or(""));
    startJoinRoomTimer();
    xmppRoom_->joinRoomUsingNickname(nickname.value_or(""), historyStanza());
    reportNotSent(notSent);
}

/// Nothing of the room is heard any more, not even that it has been left.
void QuorrandChat::dropRoom() {
    if (const auto room = std::exchange(xmppRoom_, nullptr)) room->withdraw();
    roomName.reset();
}

void QuorrandChat::openConversation(const std::string& conversation) {
    if (const auto kept = std::exchange(aside_, nullptr)) viewModel = kept;
    if (viewModel->commId == conversation) return;
    // Not reported: whoever listens now is at the other conversation.
    unsentTexts_.keep(viewModel->commId, giveUpRecovery());
    connectTimer_.reset();
    dropRoom();
    muc.reset();
    viewModel->clearMessages();
    viewModel->setRoom(conversation);
}

void QuorrandChat::openTranscripts(const std::string& conversation) {
    if (!aside_ && hasRoom()) {
        aside_ = viewModel;
        viewModel = makeViewModel();
    }
    viewModel->clearMessages();
    viewModel->setRoom(conversation);
}

std::shared_ptr<XmppRoom> QuorrandChat::makeRoom(const std::string& roomJid) {
    const auto weak = weak_from_this();
    const auto forward = [weak](auto operation) {
        return [weak, operation](const auto&... arguments) {
            if (const auto self = weak.lock()) operation(*self, arguments...);
        };
    };
    XmppRoom::Callbacks callbacks;
    callbacks.joined = forward([](QuorrandChat& chat) { chat.roomDidJoin(); });
    callbacks.joinRefused = forward(
        [](QuorrandChat& chat, const Stanza& presence) { chat.roomDidRefuseJoin(presence); });
    callbacks.left =
        forward([](QuorrandChat& chat, bool requested) { chat.roomDidLeave(requested); });
    callbacks.message =
        forward([](QuorrandChat& chat, const auto& message) { chat.roomDidReceive(message); });
    callbacks.messageRefused =
        forward([](QuorrandChat& chat, const Stanza& error) { chat.roomDidRefuseMessage(error); });
    callbacks.configurationForm = forward([](QuorrandChat& chat, const Stanza& form) {
        chat.roomDidFetchConfigurationForm(*chat.xmppRoom_, form);
    });
    return std::make_shared<XmppRoom>(
        roomJid, forward([](QuorrandChat& chat, const std::string& xml) { chat.sendStanza(xml); }),
        platform->log, std::move(callbacks));
}

void QuorrandChat::startJoinRoomTimer() {
    joinRoomTimer_ = platform->mainQueue->after(boundedTimeout(), [weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->handleJoinRoomTimeout();
    });
}

void QuorrandChat::handleJoinRoomTimeout() {
    joinRoomTimer_.reset();
    tellDelegate(&QuorrandChatDelegate::chatDidTimeoutJoinRoom, xmppRoom_, std::nullopt);
}

void QuorrandChat::roomDidJoin() {
    // Somebody has left before the room's answer came.
    if (!joinWanted_) return dropRoom();
    const auto room = xmppRoom_;
    joinRoomTimer_.reset();
    roomName = muc;
    unreadMessageCount = 0;
    updateUnreadMessageCount();
    // Who heard that may have left.
    if (xmppRoom_ != room || !room->isJoined()) return;
    roomLines().clearMessages();
    recovery_.roomWasJoined(place());
    reportJoined(room);
}

void QuorrandChat::reportJoined(const std::shared_ptr<XmppRoom>& room) {
    tellDelegate(&QuorrandChatDelegate::chatDidJoinRoom, room, std::nullopt);
    if (isRoomJoined()) reportNotSent(unsentTexts_.take(roomLines().commId));
}

void QuorrandChat::roomDidRefuseJoin(const Stanza& presence) {
    const bool mayChange = errorCondition(presence) == "conflict" ||
                           std::string_view(presence.child("error").attribute("type").value()) ==
                               "wait";  // RFC 6120, 8.3.2
    if (!joinWanted_) return;
    if (!mayChange) return reportNotSent(sentLines_.takeAll());
    const auto delay = joinRoomTimer_ ? rejoinInterval : boundedTimeout();
    rejoinTimer_ = platform->mainQueue->after(delay, [weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self || !self->xmppRoom_) return;
        self->xmppRoom_->joinRoomUsingNickname(self->nickname.value_or(""), self->historyStanza());
    });
}

void QuorrandChat::leaveRoom() {
    const auto notSent = giveUpRecovery();
    if (isConnected() && isRoomJoined()) {
        roomLines().clearMessages();
        xmppRoom_->leaveRoom();
    }
    reportNotSent(notSent);
}

void QuorrandChat::roomDidLeave(bool requested) {
    const auto room = xmppRoom_;
    roomName.reset();
    if (!requested) rememberLines();
    // What the room has taken, it had reflected before.
    const auto notSent = requested ? SentLines::Texts{} : sentLines_.takeAll();
    tellDelegate(&QuorrandChatDelegate::chatDidLeaveRoom, room, std::nullopt);
    reportNotSent(notSent);
}

void QuorrandChat::roomDidFetchConfigurationForm(XmppRoom& room, const Stanza& form) {
    if (const auto filled = makePersistentRoomForm(form)) room.configureRoomUsingOptions(*filled);
}

void QuorrandChat::requestRoomHistory() {
    if (muc) sendStanza(makeRoomPresence(*muc, historyStanza().get())->xml());
}

ChatSend QuorrandChat::sendGroupchatMessage(const std::string& typedText, bool sendOnly) {
    const auto text = cleanText(typedText);
    if (text.empty()) return ChatSend::empty;
    if (!isConnected() || !isRoomJoined()) return ChatSend::offline;
    const auto stanza = makeMessage(text);
    const auto id = generateUUID();
    setAttribute(stanza->root(), "id", id);
    if (!fits(*stanza)) return ChatSend::tooLong;
    xmppRoom_->sendMessage(*stanza);
    watchSentLine(id, text);
    firstUse = false;
    if (!sendOnly) echo(stanza, text);
    return ChatSend::sent;
}

bool QuorrandChat::fits(const Stanza& stanza) const {
    if (stanza.xml().size() <= maximumStanzaBytes) return true;
    platform->log->write("a chat line is too long to be sent");
    return false;
}

void QuorrandChat::echo(const std::shared_ptr<const Stanza>& stanza, const std::string& text) {
    const auto line = QuorrandChatMessage::createWithXMPPMessage(*this, stanza);
    // Built from what the line says, before the engine's own words stand in its place.
    (void)line->attributedString();
    line->from = nickname;
    line->fromName = getInfoType("name", nickname);
    line->type = "groupchat";
    line->text = text;
    if (line->isValidMessage) sendMessageToDelegate(line);
}

void QuorrandChat::sendMessage(const std::string& text, const std::string& user) {
    const auto stanza = makeMessage(text);
    setAttribute(stanza->root(), "type", "chat");
    setAttribute(stanza->root(), "to", user);
    if (fits(*stanza)) sendStanza(stanza->xml());
}

void QuorrandChat::fetchFriends() {
    sendStanza(makeRosterQuery()->xml());
}

void QuorrandChat::handleReceivedMessage(const std::shared_ptr<const Stanza>& stanza) {
    const auto self = shared_from_this();
    const auto line = QuorrandChatMessage::createWithXMPPMessage(*this, stanza);
    if (!line->isValidMessage) return;
    line->showNotifications = showNotifications;
    const auto room = xmppRoom_;
    if (!line->isDelayed && !isParticipant(line->from)) refreshEligibleParticipants();
    // Who heard that may have gone to another conversation.
    if (xmppRoom_ != room) return;
    const auto before = roomLines().messages().size();
    roomLines().addMessage(line);
    if (line->isDelayed && recovery_.isReplaying())
        recovery_.didReplay(roomLines().messages().size() == before);
    if (postUnreadMessageCount) {
        ++unreadMessageCount;
        updateUnreadMessageCount();
    }
    sendMessageToDelegate(line);
}

void QuorrandChat::updateUnreadMessageCount() {
    const auto self = shared_from_this();
    tellDelegate(&QuorrandChatDelegate::chatDidUpdateUnreadCount, unreadMessageCount);
    NotificationCenter::shared().post(std::string(unreadCountUpdatedNotification),
                                      static_cast<std::int64_t>(unreadMessageCount));
}

void QuorrandChat::sendMessageToDelegate(const std::shared_ptr<QuorrandChatMessage>& message) {
    if (message) tellDelegate(&QuorrandChatDelegate::chatDidReceiveMessage, message);
}

bool QuorrandChat::lineWasTapped(ChatLinePart part,
                                 const std::shared_ptr<QuorrandChatMessage>& message) {
    if (!message) return false;
    switch (part) {
        case ChatLinePart::message:
            tellDelegate(&QuorrandChatDelegate::chatDidTapMessageForMessage, message);
            return true;
        case ChatLinePart::attachment:
            if (!message->isAttachmentMessage()) return false;
            tellDelegate(&QuorrandChatDelegate::chatDidTapAttachmentForMessage, message);
            return true;
        case ChatLinePart::kb:
            if (!message->isKBMessage()) return false;
            tellDelegate(&QuorrandChatDelegate::chatDidTapKBForMessage, message);
            return true;
        case ChatLinePart::avatar:
            tellDelegate(&QuorrandChatDelegate::chatDidTapAvatarForMessage, message);
            return true;
    }
    return false;
}

void QuorrandChat::buttonDidPerformAction(QDChatActionButton& /*button*/,
                                          const std::string& action) {
    tellDelegate(&QuorrandChatDelegate::chatDidPerformAction, action);
}

}  // namespace supportsdk
