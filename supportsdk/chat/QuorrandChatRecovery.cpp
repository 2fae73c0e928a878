#include "supportsdk/chat/QDChatViewModel.h"
#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/chat/xmpp/XmppLink.h"
#include "supportsdk/chat/xmpp/XmppRoom.h"

namespace supportsdk {

namespace {
constexpr std::chrono::seconds reflectionLimit{10};
}

/// Only with a room.
ChatPlace QuorrandChat::place() {
    // Not `muc`, which a screen sets ahead of its join.
    return {xmppRoom_->jid(), roomLines().commId};
}

void QuorrandChat::rememberLines() {
    // Those of an earlier loss, when this join did not live long enough to bring them back.
    putLinesBack();
    recovery_.roomWasLost(place(), roomLines().messages());
}

/// False when there were none.
bool QuorrandChat::putLinesBack() {
    auto lines = recovery_.takeLines();
    if (lines.empty()) return false;
    roomLines().restoreMessages(std::move(lines));
    return true;
}

void QuorrandChat::roomDidReceive(const std::shared_ptr<const Stanza>& stanza) {
    const auto self = shared_from_this();
    const bool wasReplaying = recovery_.isReplaying();
    const bool wasRestored = wasReplaying && putLinesBack();
    confirmSentLine(*stanza);
    handleReceivedMessage(stanza);
    if (wasRestored) tellDelegate(&QuorrandChatDelegate::chatDidUpdateMessages);
    // Meanwhile the delegate may have left.
    if (wasReplaying && recovery_.isReplaying() && endsHistory(*stanza)) historyDidEnd();
}

void QuorrandChat::historyDidEnd() {
    if (!recovery_.endReplay()) {
        platform->log->write("none of the " + std::to_string(recovery_.replayed()) +
                             " lines that the chat room replayed was known before the connection "
                             "was lost: there may have been more in between");
    }
    recovery_.forget();
    reportNotSent(sentLines_.takeDoubtful());
}

void QuorrandChat::watchSentLine(const std::string& id, const std::string& text) {
    auto overdue = platform->mainQueue->after(reflectionLimit, [weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self || !self->link_) return;
        // The server reads in order: an answer is good for all lines that went out before.
        self->sentLines_.stopWatching();
        self->link_->checkIsAlive();
    });
    sentLines_.add(id, xmppRoom_->nickname(), text, std::move(overdue));
}

void QuorrandChat::confirmSentLine(const Stanza& reflection) {
    if (sentLines_.isEmpty()) return;
    const auto id = reflection.attribute("id");
    const auto from = reflection.attribute("from");
    const auto slash = from ? from->find('/') : std::string::npos;
    if (!id || slash == std::string::npos) return;
    sentLines_.confirm(*id, from->substr(slash + 1), xmppRoom_->nickname());
}

void QuorrandChat::roomDidRefuseMessage(const Stanza& error) {
    reportNotSent(sentLines_.takeRefused(error.attribute("id").value_or("")));
}

/// Somebody leaves. Lines that are on their way on a living stream get to the room before the
/// farewell does; nobody will learn any more what became of the others.
SentLines::Texts QuorrandChat::giveUpRecovery() {
    joinWanted_ = false;
    joinRoomTimer_.reset();
    rejoinTimer_.reset();
    recovery_.forget();
    // A stream may be dead and not have said so yet.
    if (!isConnected()) sentLines_.doubtAll();
    auto notSent = sentLines_.takeDoubtful();
    sentLines_.clear();
    return notSent;
}

void QuorrandChat::reportNotSent(const SentLines::Texts& texts) {
    if (texts.empty()) return;
    if (delegate.expired()) return unsentTexts_.keep(roomLines().commId, texts);
    tellDelegate(&QuorrandChatDelegate::chatDidNotSend, texts);
}

}  // namespace supportsdk
