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

void ChatViewController::setupChat() {
    if (resource) resource = resource->substr(0, resource->find(';'));
    participantId = resource;
    nickname = resource;
    senderId = resource;
    senderDisplayName = engine().getInfoType("name", resource);
    if (!senderDisplayName) senderDisplayName = senderId;
    if (!isBesideRoom()) engine().me = senderId;
}

void ChatViewController::chatGet(const std::string& commId) {
    showStatus("Retrieving chat information.");
    const auto progress = platform().progress;
    // The user may end the chat, or open another one, while it is being opened.
    const auto opened = whileOpen([this, commId](const Json& response) {
        createChatRecord(response);
        chatEnter(commId);
        connect();
    });
    const auto failed = whileOpen([this, commId] { chatGetFailed(commId); });
    support->chatGet(
        commId,
        [progress, opened](const Json& response) {
            progress->dismiss();
            opened(response);
        },
        [progress, failed](const Json&) {
            progress->dismiss();
            failed();
        });
}

void ChatViewController::chatGetFailed(const std::string& commId) {
    isReadOnly = true;
    // The list may be another screen's by now: of a chat of the past, or of this one again.
    if (engine().delegate.lock().get() != this) return;
    platform().progress->showError(
        localized("Unable to retrieve chat information. Attempting to retrieve transcripts."));
    getTranscripts(commId);
}

void ChatViewController::createChatRecord(const Json& response) {
    chatRecord = std::make_shared<QDConnectChat>(response);
    chatRecord->comm_id = comm_id;
    muc = chatRecord->external_id;
    takeParticipants(*chatRecord);
}

void ChatViewController::takeParticipants(const QDConnectChat& record) {
    engine().setParticipantsEligible(record.participants_eligible);
    // Lines of people who were unknown until now come into view.
    engine().viewModel->participantsDidChange();
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
    support->chatGet(*chatRecord->comm_id, whileOpen([this](const Json& response) {
        takeParticipants(QDConnectChat(response));
        resetMentionSuggestions();
        refresh();
    }),
                     {});
}

}  // namespace supportsdk
