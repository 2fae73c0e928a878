#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "supportsdk/platform/Log.h"
#include "supportsdk/platform/Stanza.h"

namespace supportsdk {

/// One room (XEP-0045) as its occupant sees it, on one stream. Main thread; callbacks run inside
/// receive().
class XmppRoom : public std::enable_shared_from_this<XmppRoom> {
 public:
    struct Callbacks {
        /// One's own presence has come (status 110); history and traffic follow.
        std::function<void()> joined;
        /// One may not enter, for now or for good; `presence` tells why.
        std::function<void(const Stanza& presence)> joinRefused;
        /// Left; without a request one was removed, or the room is gone.
        std::function<void(bool requested)> left;
        /// A groupchat message of the room or of one of its occupants.
        std::function<void(const std::shared_ptr<const Stanza>& message)> message;
        /// The room has not passed on a line of one's own; `error` has its id.
        std::function<void(const Stanza& error)> messageRefused;
        /// The room's configuration form, as an `x` element in "jabber:x:data".
        std::function<void(const Stanza& form)> configurationForm;
    };
    using Send = std::function<void(std::string xml)>;

    /// `send` writes one stanza to the stream.
    XmppRoom(std::string jid, Send send, std::shared_ptr<Log> log, Callbacks callbacks);

    [[nodiscard]] const std::string& jid() const { return jid_; }
    /// One's own, as the room writes it.
    [[nodiscard]] const std::string& nickname() const { return nickname_; }
    [[nodiscard]] bool isJoined() const { return state_ == State::joined; }

    /// Asks to enter (7.2); after a refusal, again. A refusal is logged with its condition.
    void joinRoomUsingNickname(const std::string& nickname, const std::shared_ptr<Stanza>& history);
    /// Asks to leave (7.14). Joined no more from now on; Callbacks::left follows with the room's
    /// answer.
    void leaveRoom();
    /// Leaves, or takes a request to enter back. For who drops this room without a further word.
    void withdraw();
    /// Addresses `message` to all occupants (7.4), in place, and sends it.
    void sendMessage(Stanza& message);
    /// Sends the filled-in form `form` back (10.2).
    void configureRoomUsingOptions(const Stanza& form);

    /// Takes a stanza of this room; false when it is none, or nothing that a room has to answer.
    bool receive(const std::shared_ptr<const Stanza>& stanza);

 private:
    enum class State { outside, joining, joined, leaving };

    void receivePresence(const Stanza& presence, const std::string& occupant);
    void receiveUnavailable(const Stanza& presence, const std::string& occupant);
    void receiveError(const Stanza& presence);
    bool receiveIq(const Stanza& iq);
    [[nodiscard]] std::string occupantJid() const { return jid_ + "/" + nickname_; }

    const std::string jid_;
    const Send send_;
    const std::shared_ptr<Log> log_;
    const Callbacks callbacks_;
    std::string nickname_;
    State state_ = State::outside;
};

}  // namespace supportsdk
