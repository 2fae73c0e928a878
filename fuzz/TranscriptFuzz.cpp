#include "fuzz/Fuzzing.h"
#include "supportsdk/chat/QDChatViewModel.h"
#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/QDIssue.h"
#include "tests/support/FakePlatform.h"

using namespace supportsdk;
using fuzz::require;

namespace {

void check(const QuorrandChatMessage& line) {
    require(line.from == "" && line.fromName == "" && !line.isMe && !line.isValidMessage);
    require(line.id && line.id->size() == 32 && !line.xmppMessage());
    require(!line.text || line.attributedString().plainText() == *line.text);
    require(line.fullDateString().has_value() == line.date.has_value());
    require(line.dict().size() == 22);
}

}  // namespace

/// The input is an answer of the service with issues; the transcripts of the first are listed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::FakePlatform fakes;
    static const auto chat = QuorrandChat::create(fakes.platform);

    const auto response = parseJson({reinterpret_cast<const char*>(data), size});
    const auto issue = response ? firstIssue(*response) : nullptr;
    if (!issue || !issue->transcripts) return 0;
    chat->ignoreParticipantStatus = true;
    std::size_t shown = 0;
    for (const auto& conversation : *issue->transcripts) {
        if (!conversation.is_structured()) continue;
        for (const auto& record : conversation) {
            const auto line = QuorrandChatMessage::createWithTranscript(*chat, record);
            check(*line);
            chat->viewModel->addMessage(line);
        }
    }
    for (const auto& group : chat->viewModel->messageGroups()) shown += group.size();
    require(shown == chat->viewModel->messages().size());
    chat->viewModel->clearMessages();
    fakes.settle();
    return 0;
}
