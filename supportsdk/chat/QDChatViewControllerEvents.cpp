#include "supportsdk/chat/QDChatViewController.h"
#include "supportsdk/chat/QuorrandChatMessage.h"

// What the engine reports, and the words that a person gets to see of it.

namespace supportsdk {

namespace {

std::string withDescription(std::string text, const ChatError& error) {
    return error ? std::move(text) + " " + error->description : text;
}

}  // namespace

void QDChatViewController::chatDidConnect(QuorrandChat& chat, const ChatError& /*error*/) {
    dismissOwnProgress();
    // Who has left meanwhile is not taken back in: nothing would end the text.
    if (chat.isRoomWanted()) showOpeningStatus("Joining room");
}

void QDChatViewController::chatDidFailToConnect(QuorrandChat& chat, const ChatError& error) {
    dismissOwnProgress();
    if (chat.isConnected()) return;
    warn(withDescription(localized("Unable to connect to the chat server."), error));
}

void QDChatViewController::chatDidTimeoutConnect(QuorrandChat& chat, const ChatError& error) {
    dismissOwnProgress();
    if (chat.isConnected()) return;
    const auto retry = [weak = weak(this)](const auto&) {
        if (const auto self = weak.lock()) self->connect();
    };
    const auto text = localized("Timed out while attempting to connect to the chat server.");
    platform().presenter->showAlert({hostName(),
                                     withDescription(text, error),
                                     {},
                                     {{localized("Retry"), ActionStyle::plain, retry},
                                      {localized("Cancel"), ActionStyle::cancel, {}}}});
}

void QDChatViewController::chatDidNotAuthenticate(QuorrandChat& /*chat*/,
                                                  const XmppStreamEnd& /*failure*/) {
    warn(localized("Unable to log in to the chat."));
}

void QDChatViewController::chatDidDisconnect(QuorrandChat& /*chat*/, const ChatError& error) {
    platform().log->write("didDisconnect: " + (error ? error->description : "(null)"));
    dismissOwnProgress();
}

void QDChatViewController::chatDidJoinRoom(QuorrandChat& /*chat*/,
                                           const std::shared_ptr<XmppRoom>& /*room*/,
                                           const ChatError& /*error*/) {
    dismissOwnProgress();
    if (!titleProvided) title = chatRoomTitle.value_or(localized("Quorrand"));
    reloadData();
}

void QDChatViewController::chatDidLeaveRoom(QuorrandChat& /*chat*/,
                                            const std::shared_ptr<XmppRoom>& /*room*/,
                                            const ChatError& /*error*/) {
    reloadData();
}

void QDChatViewController::chatDidTimeoutJoinRoom(QuorrandChat& chat,
                                                  const std::shared_ptr<XmppRoom>& /*room*/,
                                                  const ChatError& /*error*/) {
    dismissOwnProgress();
    if (!chat.isRoomJoined()) warn(localized("Unable to join chat room."));
}

void QDChatViewController::chatDidReceiveMessage(QuorrandChat& chat, const Message& /*message*/) {
    dismissOwnProgress();
    chat.typingType = 0;
    handleIssueRefresh();
    startReloadTimer();
}

void QDChatViewController::chatDidLoadPictures(QuorrandChat& /*chat*/) {
    startReloadTimer();
}

void QDChatViewController::chatDidUpdateMessages(QuorrandChat& /*chat*/) {
    startReloadTimer();
}

void QDChatViewController::chatDidLoseConnection(QuorrandChat& /*chat*/) {
    reloadData();
}

void QDChatViewController::chatRefreshEligibleParticipants(QuorrandChat& /*chat*/) {
    resetMentionSuggestions();
}

void QDChatViewController::chatDidTapAvatarForMessage(QuorrandChat& /*chat*/,
                                                      const Message& message) {
    addMentionToInput(message->from);
}

void QDChatViewController::chatDidTapCallForMessage(QuorrandChat& /*chat*/,
                                                    const Message& message) {
    handleMessageTapped(message);
}

}  // namespace supportsdk
