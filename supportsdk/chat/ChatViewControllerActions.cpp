#include <algorithm>
#include <string_view>

#include "supportsdk/chat/ChatViewController.h"
#include "supportsdk/chat/QDChatViewModel.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/core/BaseWebViewController.h"
#include "supportsdk/core/NotificationCenter.h"
#include "supportsdk/core/Url.h"

namespace supportsdk {

void ChatViewController::handleButtonAction(const std::optional<std::string>& action,
                                            const std::optional<std::string>& /*label*/,
                                            const Message& message) {
    if (!action) return;
    constexpr std::string_view textPrefix = "qd-msg://";
    const auto scheme = std::string_view(*action).substr(0, action->find(':'));
    if (scheme == "http") {
        presentWebPage(*action, "Cancel", true);
    } else if (action->starts_with(textPrefix)) {
        sendLine(action->substr(textPrefix.size()), false);
    } else if (scheme == "qd-bot" || scheme == "qd-data") {
        sendLine(QuorrandChatMessage::createJSONMessage(*action, senderId.value_or(""),
                                                        message->id.value_or("")),
                 false);
        addTypingMessage();
        reloadData();
    } else if (*action == "qd-connect://classify-request") {
        attach();
    }
    // "qd-action" and "qd-relay" are addresses that ask nothing of this side.
}

bool ChatViewController::isNewest(const QuorrandChatMessage& message) const {
    const auto newest = lastMessage();
    return newest && newest->id == message.id;
}

void ChatViewController::chatDidTapMessageForMessage(QuorrandChat& /*chat*/,
                                                     const Message& message) {
    if (!message->isCallInvitationMessage()) return;
    if (isVideoUnavailable) {
        warn(localized("Video chat and screen sharing is unavailable in this version."));
    } else if (isNewest(*message)) {
        joinVideoChat(*message->callId);
    }
}

void ChatViewController::chatDidTapAttachmentForMessage(QuorrandChat& /*chat*/,
                                                        const Message& message) {
    showAttachment(message);
}

void ChatViewController::handleMessageTapped(const Message& message) {
    if (message->isCallInvitationMessage()) {
        if (isNewest(*message)) joinVideoChat(*message->callId);
    } else if (message->messageType == ChatMessageType::Attachment) {
        showAttachment(message);
    } else if (message->messageType == ChatMessageType::KnowledgeBase) {
        chatDidTapKBForMessage(engine(), message);
    }
}

void ChatViewController::messageTapped(const Notification& notification) {
    const auto tapped = notification.object.object();
    const auto& lines = engine().viewModel->messages();
    const auto line = std::find(lines.rbegin(), lines.rend(), tapped);
    if (line != lines.rend()) handleMessageTapped(*line);
}

void ChatViewController::showAttachment(const Message& message) {
    if (!message->isAttachmentMessage()) return;
    engine().isActionRequested = true;
    engine().lastChatMessageReceived = nullptr;
    presentWebPage(*message->url, "Done", false);
}

void ChatViewController::presentWebPage(const std::string& url, const std::string& backLabel,
                                        bool showsProgress) {
    if (!isWebAddress(url)) {
        platform().progress->showError(localized("Unable to open webpage"));
        return;
    }
    const auto page = std::make_shared<BaseWebViewController>(platform(), localized("Attachment"),
                                                              localized(backLabel), url);
    page->showsProgress = showsProgress;
    auto navigation = std::make_shared<NavigationController>();
    navigation->children.push_back(page);
    handOver([&] { platform().presenter->present(std::move(navigation), this); });
}

}  // namespace supportsdk
