#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "supportsdk/chat/QDChatButtonCollectionView.h"
#include "supportsdk/platform/XmppStream.h"

namespace supportsdk {

class QuorrandChat;
class QuorrandChatMessage;
class XmppRoom;

/// Why a stream ended or could not be had; nothing where there is no error to tell.
using ChatError = std::optional<XmppStreamEnd>;

/// The one listener of the chat engine. Main thread. An operation that is not overridden is
/// silence. Every operation may call the engine, replace its delegate, and let go of both. The
/// buttons of its lines report to it as well.
class QuorrandChatDelegate : public QDChatButtonCollectionViewDelegate {
 public:
    /// Authenticated, or connect() found the stream up; the join of the room follows. No error.
    virtual void chatDidConnect(QuorrandChat& /*chat*/, const ChatError& /*error*/) {}

    /// The stream cannot be had from here (its certificate is refused, or the process has no
    /// descriptor left for it); the engine does not try again by itself.
    virtual void chatDidFailToConnect(QuorrandChat& /*chat*/, const ChatError& /*error*/) {}

    /// `timeout` has passed without a stream; heard once for each connect(). The engine keeps
    /// trying, and a late success is reported as any other.
    virtual void chatDidTimeoutConnect(QuorrandChat& /*chat*/, const ChatError& /*error*/) {}

    /// The server refused the account; chatDidDisconnect() follows, and no new attempt.
    virtual void chatDidNotAuthenticate(QuorrandChat& /*chat*/, const XmppStreamEnd& /*failure*/) {}

    /// The stream is down and stays down until the next connect(). A disconnect() is heard twice:
    /// when it is asked for, and when the stream has ended.
    virtual void chatDidDisconnect(QuorrandChat& /*chat*/, const ChatError& /*error*/) {}

    /// A stream that was up is gone, and is being connected again: chatDidConnect() follows as soon
    /// as that works, however long it takes. Heard once for each loss.
    virtual void chatDidLoseConnection(QuorrandChat& /*chat*/) {}

    /// A valid line: from the room, or the local echo of one just sent.
    virtual void chatDidReceiveMessage(QuorrandChat& /*chat*/,
                                       const std::shared_ptr<QuorrandChatMessage>& /*message*/) {}

    /// These lines, in the order of sending, went out and never came back from the room, which
    /// would have reflected them: they did not get there. Only when more was said during a lost
    /// connection than the room replays, one of them may have arrived. While there is no delegate
    /// they are kept, and told behind the next chatDidJoinRoom() of their conversation.
    virtual void chatDidNotSend(QuorrandChat& /*chat*/, const std::vector<std::string>& /*texts*/) {
    }

    /// In the room. `room` is null when it had been joined before the call. No error.
    virtual void chatDidJoinRoom(QuorrandChat& /*chat*/, const std::shared_ptr<XmppRoom>& /*room*/,
                                 const ChatError& /*error*/) {}

    /// Out of the room: on request, by a kick, or because the room is gone. No error.
    virtual void chatDidLeaveRoom(QuorrandChat& /*chat*/, const std::shared_ptr<XmppRoom>& /*room*/,
                                  const ChatError& /*error*/) {}

    /// `timeout` has passed since the join was sent, or the room refused it by then. No error.
    virtual void chatDidTimeoutJoinRoom(QuorrandChat& /*chat*/,
                                        const std::shared_ptr<XmppRoom>& /*room*/,
                                        const ChatError& /*error*/) {}

    /// Pictures of lines have come and stand where placeholders stood. Not for each line: those
    /// that wait for one address are told once.
    virtual void chatDidLoadPictures(QuorrandChat& /*chat*/) {}

    /// An action button reported its address.
    virtual void chatDidPerformAction(QuorrandChat& /*chat*/, const std::string& /*action*/) {}

    /// Lines that were known before a lost connection are in the list again.
    virtual void chatDidUpdateMessages(QuorrandChat& /*chat*/) {}

    virtual void chatDidUpdateUnreadCount(QuorrandChat& /*chat*/, std::uint64_t /*count*/) {}

    /// A live line came from somebody who is not among the eligible participants.
    virtual void chatRefreshEligibleParticipants(QuorrandChat& /*chat*/) {}

    /// An action button in a line was pressed. `action` is its address; null when it has none.
    virtual void handleButtonAction(const std::optional<std::string>& /*action*/,
                                    const std::optional<std::string>& /*label*/,
                                    const std::shared_ptr<QuorrandChatMessage>& /*message*/) {}

    // Taps on the parts of a line, reported by the views.
    using Message = std::shared_ptr<QuorrandChatMessage>;
    virtual void chatDidTapAvatarForMessage(QuorrandChat& /*chat*/, const Message& /*message*/) {}
    virtual void chatDidTapCallForMessage(QuorrandChat& /*chat*/, const Message& /*message*/) {}
    virtual void chatDidTapMessageForMessage(QuorrandChat& /*chat*/, const Message& /*message*/) {}
    virtual void chatDidTapAttachmentForMessage(QuorrandChat& /*chat*/,
                                                const Message& /*message*/) {}
    virtual void chatDidTapKBForMessage(QuorrandChat& /*chat*/, const Message& /*message*/) {}
    virtual void chatDidTapBackgroundForMessage(QuorrandChat& /*chat*/,
                                                const Message& /*message*/) {}
};

}  // namespace supportsdk
