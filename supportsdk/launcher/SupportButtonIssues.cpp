#include "supportsdk/chat/ChatViewController.h"
#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/QDIssue.h"
#include "supportsdk/launcher/RatingAfterChat.h"
#include "supportsdk/launcher/SupportButton.h"

namespace supportsdk {

void SupportButton::getOrCreateIssue() {
    if (!support) return;
    if (support->loadCurrentIssue() && support->currentIssueId) {
        checkForActiveIssue(*support->currentIssueId);
    } else {
        createIssue();
    }
}

void SupportButton::checkForActiveIssue(const std::string& issueId) {
    if (!support) return;
    platform_->progress->showStatus(platform_->localizer->localized(kCreatingIssueText));
    support->getIssue(issueId, afterDismissal(&SupportButton::activeIssueFetched),
                      afterDismissal(&SupportButton::activeIssueMissing));
}

void SupportButton::activeIssueFetched(const Json& response) {
    const auto issue = firstIssue(response);
    if (!issue) return;
    if (!issue->isOpen()) {
        support->clearCurrentIssue();
        createIssue();
        return;
    }
    // Only the answer to the creation is sure to carry the credentials.
    if (!issue->xmpp_data) issue->xmpp_data = support->xmppdata;
    support->getHistory();
    displayChatWithIssue(issue);
}

/// The stored issue may be gone from the service; the user came to chat.
void SupportButton::activeIssueMissing(const Json&) {
    createIssue();
}

void SupportButton::createIssue() {
    if (!support) return;
    if (support->chat && support->chat->isOffline) {
        createTemporaryIssue();
        return;
    }
    platform_->progress->showStatus(platform_->localizer->localized(kCreatingIssueText));
    support->createIssueWithCallbackNumber(std::nullopt, std::nullopt,
                                           afterDismissal(&SupportButton::createIssueSucceeded),
                                           afterDismissal(&SupportButton::createIssueFailed));
}

void SupportButton::createIssueSucceeded(const Json& response) {
    const auto issue = firstIssue(response);
    if (!issue) return;
    support->saveCurrentIssue(issue);
    support->getHistory();
    displayChatWithIssue(issue);
}

void SupportButton::createIssueFailed(const Json& response) {
    std::string description = "Unable to create issue";
    if (const auto message = stringForKey(response, "message")) description += ": " + *message;
    failWithDescription(description, std::nullopt);
}

void SupportButton::createTemporaryIssue() {
    auto issue = std::make_shared<QDIssue>();
    issue->id = "T" + fullDateString();
    issue->reference_num = issue->id;
    issue->isTemporary = true;
    displayChatWithIssue(issue);
}

void SupportButton::displayChatWithIssue(const std::shared_ptr<QDIssue>& issue) {
    if (!support || !issue) return;
    chatViewController = ChatViewController::create(support, issue);
    chatViewController->chatRoomTitle = "";
    chatViewController->isVideoUnavailable = isVideoUnavailable();
    chatViewController->rating = ratingAfterChat(support, weak_from_this());
    displayScreen(chatViewController);
}

bool SupportButton::isVideoUnavailable() {
    return true;
}

}  // namespace supportsdk
