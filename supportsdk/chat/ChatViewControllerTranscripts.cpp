#include <algorithm>

#include "supportsdk/chat/ChatViewController.h"
#include "supportsdk/chat/QDChatViewModel.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/LowerCased.h"

namespace supportsdk {

void ChatViewController::getTranscripts(const std::string& commId) {
    const auto user = lowerCased("members_users:" + support->identity.membersUsersId.text());
    engine().ignoreParticipantStatus = true;
    if (holdsRoomLines()) {
        engine().viewModel->groupMessages();
        return reloadData();
    }
    if (!issue || !issue->transcripts) return;
    std::vector<std::shared_ptr<QuorrandChatMessage>> lines;
    for (const auto& record : dictionaryForKey(*issue->transcripts, commId)) {
        const auto& message =
            lines.emplace_back(QuorrandChatMessage::createWithTranscript(engine(), record));
        const auto sender = stringForKey(record, "from_key");
        if (sender && lowerCased(*sender) == user) message->isMe = true;
    }
    // Thousands of lines that came in no order would be moved for each other one by one.
    std::stable_sort(lines.begin(), lines.end(),
                     [](const auto& one, const auto& two) { return one->date < two->date; });
    for (const auto& line : lines) addMessage(line);
    reloadData();
}

/// Back in a chat that has gone on: its lines are here, under other ids than in the transcripts,
/// and more of them will come.
bool ChatViewController::holdsRoomLines() const {
    const auto newest = lastMessage();
    return newest && newest->isValidMessage;
}

}  // namespace supportsdk
