#include "supportsdk/chat/ChatViewController.h"
#include "supportsdk/chat/QDChatViewModel.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk {

void ChatViewController::setChatTitle() {
    if (!chatRoomTitle) return;
    titleProvided = true;
    title = *chatRoomTitle;
}

void ChatViewController::setXmppInfo(const Json& information) {
    comm_id = stringForKey(information, "comm_id");
    resource = stringForKey(information, "resource");
    if (isBesideRoom()) return;
    engine().jid = stringForKey(information, "jid");
    engine().password = stringForKey(information, "password");
    engine().host = stringForKey(information, "host");
    engine().port = integerForKey(information, "port").value_or(0);
}

/// A chat of the past, while the engine keeps the room of a live one: it must find back there with
/// its own credentials.
bool ChatViewController::isBesideRoom() const {
    return isReadOnly && engine().hasRoom();
}

void ChatViewController::setupChat() {
    if (resource) resource = resource->substr(0, resource->find(';'));
    participantId = resource;
    nickname = resource;
    senderId = resource;
    senderDisplayName = engine().getInfoType("name", resource);
    if (!senderDisplayName) senderDisplayName = senderId;
    engine().me = senderId;
}

void ChatViewController::chatGet(const std::string& commId) {
    showStatus("Retrieving chat information.");
    const auto progress = platform().progress;
    support->chatGet(
        commId,
        [weak = weak(this), progress, commId](const Json& response) {
            progress->dismiss();
            const auto self = weak.lock();
            // The user may have ended the chat while it was being opened.
            if (!self || !self->issue) return;
            self->createChatRecord(response);
            self->chatEnter(commId);
            self->connect();
        },
        [weak = weak(this), progress, commId](const Json&) {
            progress->dismiss();
            const auto self = weak.lock();
            if (self && self->issue) self->chatGetFailed(commId);
        });
}

void ChatViewController::chatGetFailed(const std::string& commId) {
    platform().progress->showError(
        localized("Unable to retrieve chat information. Attempting to retrieve transcripts."));
    isReadOnly = true;
    getTranscripts(commId);
}

void ChatViewController::createChatRecord(const Json& response) {
    chatRecord = std::make_shared<QDConnectChat>(response);
    chatRecord->comm_id = comm_id;
    muc = chatRecord->external_id;
    engine().setParticipantsEligible(chatRecord->participants_eligible);
}

void ChatViewController::chatEnter(const std::string& commId) {
    support->chatEnter(commId,
                       [weak = weak(this)](const Json&) {
                           if (const auto self = weak.lock()) self->commEntered = true;
                       },
                       {});
}

void ChatViewController::chatExit(const std::string& commId) {
    support->chatExit(commId, 0, 0,
                      [weak = weak(this)](const Json&) {
                          if (const auto self = weak.lock()) self->commEntered = false;
                      },
                      {});
}

void ChatViewController::chatRefreshEligibleParticipants(QuorrandChat& chat) {
    QDChatViewController::chatRefreshEligibleParticipants(chat);
    if (!chatRecord || !chatRecord->comm_id) return;
    support->chatGet(
        *chatRecord->comm_id,
        [weak = weak(this)](const Json& response) {
            const auto self = weak.lock();
            if (!self) return;
            self->engine().setParticipantsEligible(QDConnectChat(response).participants_eligible);
            self->resetMentionSuggestions();
            // Lines of people who were unknown until now come into view.
            self->engine().viewModel->groupMessages();
            self->refresh();
        },
        {});
}

}  // namespace supportsdk
