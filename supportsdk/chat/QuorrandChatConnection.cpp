#include <algorithm>
#include <limits>

#include "supportsdk/chat/NetworkWatch.h"
#include "supportsdk/chat/QDChatViewModel.h"
#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/chat/xmpp/Roster.h"
#include "supportsdk/chat/xmpp/Stanzas.h"
#include "supportsdk/chat/xmpp/XmppLink.h"
#include "supportsdk/chat/xmpp/XmppRoom.h"

namespace supportsdk {

bool QuorrandChat::isConnected() const {
    return link_ && link_->isAuthenticated();
}

bool QuorrandChat::connect() {
    streamWanted_ = true;
    joinWanted_ = true;
    return startConnecting();
}

bool QuorrandChat::startConnecting() {
    const auto self = shared_from_this();
    roomLines().setRoom(commId);
    if (isConnected()) {
        connectTimer_.reset();
        tellDelegate(&QuorrandChatDelegate::chatDidConnect, std::nullopt);
        joinRoom(muc, nickname);
        return true;
    }
    if (link_ && link_->isConnecting()) {
        // Who asks again after a time-out was reported is to hear of the next one too.
        if (!connectTimer_) startConnectTimer();
        return true;
    }
    const bool opened = openStream();
    if (opened) startConnectTimer();
    return opened;
}

bool QuorrandChat::openStream() {
    // A stream may have died without having reported its end, and will not any more.
    if (isRoomJoined()) rememberLines();
    sentLines_.doubtAll();
    dropStream();
    if (!jid || !password) return false;
    XmppStreamOptions options;
    options.host = host.value_or("");
    if (port > 0 && port <= std::numeric_limits<std::uint16_t>::max())
        options.port = static_cast<std::uint16_t>(port);
    options.jid = *jid;
    options.password = *password;
    options.connectTimeout = boundedTimeout();

    XmppLink::Callbacks callbacks;
    const auto weak = weak_from_this();
    callbacks.authenticated = [weak](XmppLink& link) {
        if (const auto self = weak.lock()) self->linkDidAuthenticate(link);
    };
    callbacks.received = [weak](XmppLink& link, const auto& stanza) {
        const auto self = weak.lock();
        return self && self->linkDidReceive(link, stanza);
    };
    callbacks.ended = [weak](XmppLink& link, const XmppStreamEnd& end) {
        if (const auto self = weak.lock()) self->linkDidEnd(link, end);
    };
    link_ = std::make_shared<XmppLink>(*platform->xmpp, platform->mainQueue, std::move(callbacks));
    link_->connect(options);
    if (!networkStatus_) {
        networkStatus_ = std::make_unique<NetworkWatch>(*platform, [weak] {
            if (const auto self = weak.lock()) self->networkDidChange();
        });
    }
    return true;
}

void QuorrandChat::networkDidChange() {
    if (!link_) return;
    if (isConnected()) {
        link_->checkIsAlive();
    } else if (link_->isConnecting()) {
        // What was sent into a dead network comes back only after ever longer pauses.
        openStream();
    }
}

void QuorrandChat::retire(std::shared_ptr<XmppLink> link) {
    if (link && link->isCalling()) platform->mainQueue->post([link = std::move(link)] {});
}

void QuorrandChat::dropStream() {
    retire(std::move(link_));
    rejoinTimer_.reset();
    xmppRoom_.reset();
    roomName.reset();
}

void QuorrandChat::disconnect() {
    const auto self = shared_from_this();
    connectTimer_.reset();
    leaveRoom();
    if (maintainConnection) return;
    streamWanted_ = false;
    tellDelegate(&QuorrandChatDelegate::chatDidDisconnect, std::nullopt);
    joinRoomTimer_.reset();
    if (link_) {
        sendStanza(makePresence("unavailable")->xml());
        disconnectRequested = true;
        // Kept until it has ended, for what it still sends and for the report of its end.
        retire(std::exchange(closingLink_, link_));
        link_->disconnect();
    }
    networkStatus_.reset();
    dropStream();
}

void QuorrandChat::linkDidAuthenticate(XmppLink& link) {
    if (&link != link_.get()) return;
    connectTimer_.reset();
    tellDelegate(&QuorrandChatDelegate::chatDidConnect, std::nullopt);
    if (&link != link_.get()) return;
    sendStanza(makePresence()->xml());
    if (joinWanted_) joinRoom(muc, nickname);
}

bool QuorrandChat::linkDidReceive(XmppLink& link, const std::shared_ptr<const Stanza>& stanza) {
    if (&link != link_.get()) return false;
    if (stanza->name() == "iq") didReceiveIQ(*stanza);
    const auto room = xmppRoom_;
    return room && room->receive(stanza);
}

void QuorrandChat::didReceiveIQ(const Stanza& iq) {
    for (const auto& friendJid : rosterItems(iq)) platform->log->write("Friend: " + friendJid);
}

void QuorrandChat::linkDidEnd(XmppLink& link, const XmppStreamEnd& end) {
    if (&link == closingLink_.get()) return closingLinkDidEnd(end);
    if (&link != link_.get()) return;
    if (isRoomJoined()) rememberLines();
    sentLines_.doubtAll();
    dropStream();
    const bool refusedHere =
        end.loss == XmppLoss::certificate || end.loss == XmppLoss::noDescriptor;
    if (end.loss == XmppLoss::credentials) {
        didNotAuthenticate(end);
    } else if (refusedHere && !link.wasAuthenticated()) {
        tellDelegate(&QuorrandChatDelegate::chatDidFailToConnect, end);
        reportNotSent(sentLines_.takeAll());
    } else if (end.loss == XmppLoss::closedByServer && end.condition == "conflict") {
        // Another stream has taken over this account's resource. Taking it back would make the two
        // throw each other out for ever (RFC 6120, 4.9.3.3).
        tellDelegate(&QuorrandChatDelegate::chatDidDisconnect, end);
        reportNotSent(sentLines_.takeAll());
    } else if (link.wasAuthenticated()) {
        if (startConnecting()) tellDelegate(&QuorrandChatDelegate::chatDidLoseConnection);
    } else {
        // The attempt goes on with another stream; its clock runs on, so that a server that
        // refuses again and again is reported like one that is silent. Without a clock nobody waits
        // for it any more.
        if (end.loss == XmppLoss::timedOut && connectTimer_) handleConnectTimeout(end);
        if (!link_ && streamWanted_) openStream();
    }
}

void QuorrandChat::closingLinkDidEnd(const XmppStreamEnd& end) {
    retire(std::move(closingLink_));
    disconnectRequested = false;
    const ChatError error = end.loss == XmppLoss::requested ? std::nullopt : std::optional(end);
    tellDelegate(&QuorrandChatDelegate::chatDidDisconnect, error);
}

void QuorrandChat::didNotAuthenticate(const XmppStreamEnd& failure) {
    connectTimer_.reset();
    tellDelegate(&QuorrandChatDelegate::chatDidNotAuthenticate, failure);
    disconnect();
    tellDelegate(&QuorrandChatDelegate::chatDidDisconnect, failure);
}

std::chrono::milliseconds QuorrandChat::boundedTimeout() const {
    return std::clamp<std::chrono::seconds>(timeout, std::chrono::seconds{1},
                                            std::chrono::hours{24});
}

void QuorrandChat::startConnectTimer() {
    connectTimeoutFired = false;
    connectTimer_ = platform->mainQueue->after(boundedTimeout(), [weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->handleConnectTimeout(std::nullopt);
    });
}

void QuorrandChat::handleConnectTimeout(const ChatError& error) {
    connectTimer_.reset();
    if (connectTimeoutFired) return;
    connectTimeoutFired = true;
    tellDelegate(&QuorrandChatDelegate::chatDidTimeoutConnect, error);
}

}  // namespace supportsdk
