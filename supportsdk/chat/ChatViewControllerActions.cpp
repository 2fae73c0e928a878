#include <string_view>

#include "supportsdk/chat/ChatViewController.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/core/BaseWebViewController.h"

namespace supportsdk {

void ChatViewController::handleButtonAction(const std::optional<std::string>& action,
                                            const std::optional<std::string>& /*label*/,
                                            const Message& message) {
    if (!action) return;
    constexpr std::string_view textPrefix = "qd-msg://";
    const auto scheme = std::string_view(*action).substr(0, action->find(':'));
    if (scheme == "http") {
        presentWebPage(*action, "Cancel");
    } else if (action->starts_with(textPrefix)) {
        engine().sendGroupchatMessage(action->substr(textPrefix.size()), false);
    } else if (scheme == "qd-bot" || scheme == "qd-data") {
        engine().sendGroupchatMessage(QuorrandChatMessage::createJSONMessage(
                                          *action, senderId.value_or(""), message->id.value_or("")),
                                      false);
        addTypingMessage();
        reloadData();
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
    }
}

void ChatViewController::showAttachment(const Message& message) {
    if (!message->isAttachmentMessage()) return;
    engine().isActionRequested = true;
    engine().lastChatMessageReceived = nullptr;
    presentWebPage(*message->url, "Done");
}

void ChatViewController::presentWebPage(const std::string& url, const std::string& backLabel) {
    auto navigation = std::make_shared<NavigationController>();
    navigation->children.push_back(std::make_shared<BaseWebViewController>(
        platform(), localized("Attachment"), localized(backLabel), url));
    platform().presenter->present(std::move(navigation), this);
}

}  // namespace supportsdk
