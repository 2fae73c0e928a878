#include <array>
#include <chrono>
#include <cstdio>

#include "supportsdk/chat/ChatViewController.h"
#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/QDIssue.h"
#include "supportsdk/launcher/SupportButton.h"

namespace supportsdk {

namespace {

std::shared_ptr<QDIssue> firstIssue(const Json& response) {
    const auto& results = arrayForKey(response, "results");
    return results.empty() ? nullptr : std::make_shared<QDIssue>(results.front());
}

}  // namespace

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
    const auto weak = weak_from_this();
    support->getIssue(
        issueId,
        [weak, progress = platform_->progress](const Json& response) {
            progress->dismiss();
            if (const auto self = weak.lock()) self->activeIssueFetched(response);
        },
        [weak, progress = platform_->progress](const Json&) {
            progress->dismiss();
            // The stored issue may be gone from the service; the user came to chat.
            if (const auto self = weak.lock()) self->createIssue();
        });
}

void SupportButton::activeIssueFetched(const Json& response) {
    const auto issue = firstIssue(response);
    if (!issue || !support) return;
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

void SupportButton::createIssue() {
    if (!support) return;
    if (support->chat && support->chat->isOffline) {
        createTemporaryIssue();
        return;
    }
    platform_->progress->showStatus(platform_->localizer->localized(kCreatingIssueText));
    const auto weak = weak_from_this();
    support->createIssueWithCallbackNumber(
        std::nullopt, std::nullopt,
        [weak, progress = platform_->progress](const Json& response) {
            progress->dismiss();
            if (const auto self = weak.lock()) self->createIssueSucceeded(response);
        },
        [weak, progress = platform_->progress](const Json& response) {
            progress->dismiss();
            if (const auto self = weak.lock()) self->createIssueFailed(response);
        });
}

void SupportButton::createIssueSucceeded(const Json& response) {
    const auto issue = firstIssue(response);
    if (!issue || !support) return;
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
    displayScreen(chatViewController);
}

bool SupportButton::isVideoUnavailable() {
    return true;
}

std::string SupportButton::fullDateString() const {
    using std::chrono::milliseconds;
    const auto now = platform_->clock->now();
    const auto parts = platform_->clock->local(now);
    const auto elapsed = std::chrono::floor<milliseconds>(now).time_since_epoch();
    const auto fraction = static_cast<int>((elapsed % 1000 + milliseconds{1000}).count() % 1000);
    std::array<char, 32> date{};
    const auto length = std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &parts);
    std::array<char, 8> rest{};
    std::snprintf(rest.data(), rest.size(), ".%03dZ", fraction);
    return std::string(date.data(), length) + rest.data();
}

}  // namespace supportsdk
