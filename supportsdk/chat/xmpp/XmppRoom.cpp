#include "supportsdk/chat/xmpp/XmppRoom.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "supportsdk/chat/xmpp/Stanzas.h"

namespace supportsdk {

namespace {

struct Address {
    std::string_view bare;
    std::string_view resource;
};

Address split(std::string_view jid) {
    const auto slash = jid.find('/');
    if (slash == std::string_view::npos) return {jid, {}};
    return {jid.substr(0, slash), jid.substr(slash + 1)};
}

/// Servers answer with the room's name in lower case, however it was written (RFC 7622, 3.3).
bool sameBareJid(std::string_view one, std::string_view other) {
    const auto lower = [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    };
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [lower](char a, char b) { return lower(a) == lower(b); });
}

bool hasStatus(const pugi::xml_node& x, std::string_view code) {
    for (const auto& status : x.children("status")) {
        if (code == status.attribute("code").value()) return true;
    }
    return false;
}

}  // namespace

XmppRoom::XmppRoom(std::string jid, Send send, std::shared_ptr<Log> log, Callbacks callbacks)
    : jid_(std::move(jid)),
      send_(std::move(send)),
      log_(std::move(log)),
      callbacks_(std::move(callbacks)) {}

void XmppRoom::joinRoomUsingNickname(const std::string& nickname,
                                     const std::shared_ptr<Stanza>& history) {
    nickname_ = nickname;
    state_ = State::joining;
    send_(makeRoomPresence(occupantJid(), history.get())->xml());
}

void XmppRoom::leaveRoom() {
    state_ = State::leaving;
    send_(makePresence("unavailable", occupantJid())->xml());
}

void XmppRoom::withdraw() {
    if (state_ == State::joined || state_ == State::joining) leaveRoom();
}

void XmppRoom::sendMessage(Stanza& message) {
    setAttribute(message.root(), "to", jid_);
    setAttribute(message.root(), "type", "groupchat");
    send_(message.xml());
}

void XmppRoom::configureRoomUsingOptions(const Stanza& form) {
    const auto iq = makeIq("set", generateUUID(), jid_);
    auto query = appendElement(iq->root(), "query");
    setAttribute(query, "xmlns", xmlns::mucOwner);
    setAttribute(query.append_copy(form.root()), "type", "submit");
    send_(iq->xml());
}

bool XmppRoom::receive(const std::shared_ptr<const Stanza>& stanza) {
    const auto from = split(stanza->attributeView("from").value_or(""));
    if (!sameBareJid(from.bare, jid_)) return false;
    const auto name = stanza->name();
    if (name == "iq") return from.resource.empty() && receiveIq(*stanza);
    if (name == "presence") {
        receivePresence(*stanza, std::string(from.resource));
    } else if (stanza->attributeView("type") == "groupchat") {
        if (state_ == State::leaving) return true;
        // A callback may let go of this room.
        const auto self = shared_from_this();
        callbacks_.message(stanza);
    } else if (stanza->attributeView("type") == "error") {
        log_->write("chat room refused a message: " + errorCondition(*stanza));
        // Private errors of other occupants come through the room as well.
        const auto self = shared_from_this();
        if (from.resource.empty()) callbacks_.messageRefused(*stanza);
    }
    return true;
}

void XmppRoom::receivePresence(const Stanza& presence, const std::string& occupant) {
    const auto type = presence.attribute("type");
    if (type == "error") return receiveError(presence);
    if (type == "unavailable") return receiveUnavailable(presence, occupant);
    if (type || state_ != State::joining) return;
    if (!hasStatus(presence.child("x", xmlns::mucUser), "110")) return;
    // The room may have changed the nickname on the way in (status 210).
    nickname_ = occupant;
    state_ = State::joined;
    const auto self = shared_from_this();
    callbacks_.joined();
}

void XmppRoom::receiveUnavailable(const Stanza& presence, const std::string& occupant) {
    const auto x = presence.child("x", xmlns::mucUser);
    const bool own = hasStatus(x, "110") || occupant == nickname_;
    if (!own || (state_ != State::joined && state_ != State::leaving)) return;
    if (hasStatus(x, "303")) {  // not gone, renamed (7.6)
        nickname_ = x.child("item").attribute("nick").as_string(nickname_.c_str());
        return;
    }
    if (hasStatus(x, "307")) log_->write("removed from the chat room");
    if (childOf(x, "destroy")) log_->write("the chat room was destroyed");
    if (hasStatus(x, "332")) log_->write("the chat room's service shuts down");
    const bool requested = std::exchange(state_, State::outside) == State::leaving;
    const auto self = shared_from_this();
    callbacks_.left(requested);
}

void XmppRoom::receiveError(const Stanza& presence) {
    // An occupant also gets errors, for example for a request of history; it stays an occupant.
    log_->write(
        (state_ == State::joining ? "joining the chat room failed: " : "chat room error: ") +
        errorCondition(presence));
    if (state_ != State::joining) return;
    state_ = State::outside;
    const auto self = shared_from_this();
    callbacks_.joinRefused(presence);
}

bool XmppRoom::receiveIq(const Stanza& iq) {
    const auto form = childOf(iq.child("query", xmlns::mucOwner), "x", xmlns::dataForm);
    if (iq.attribute("type") != "result" || !form) return false;
    Stanza copy("x");
    for (const auto& attribute : form.attributes()) copy.root().append_copy(attribute);
    for (const auto& child : form.children()) copy.root().append_copy(child);
    setAttribute(copy.root(), "xmlns", xmlns::dataForm);
    const auto self = shared_from_this();
    callbacks_.configurationForm(copy);
    return true;
}

}  // namespace supportsdk
