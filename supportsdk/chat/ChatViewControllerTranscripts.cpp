#include "supportsdk/chat/ChatViewController.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/LowerCased.h"

namespace supportsdk {

void ChatViewController::getTranscripts(const std::string& commId) {
    const auto user = lowerCased("members_users:" + support->identity.membersUsersId.text());
    engine().ignoreParticipantStatus = true;
    if (!issue || !issue->transcripts) return;
    for (const auto& record : dictionaryForKey(*issue->transcripts, commId)) {
        const auto message = QuorrandChatMessage::createWithTranscript(engine(), record);
        const auto sender = stringForKey(record, "from_key");
        if (sender && lowerCased(*sender) == user) message->isMe = true;
        addMessage(message);
    }
    reloadData();
}

}  // namespace supportsdk
