#include "supportsdk/chat/QDChatViewModel.h"

#include <algorithm>
#include <chrono>

namespace supportsdk {

namespace {

constexpr std::chrono::seconds longestGap{120};

/// Lines without a date come first.
Clock::Time dateOf(const QuorrandChatMessage& message) {
    return message.date.value_or(Clock::Time{});
}

bool isEarlier(const QDChatViewModel::Message& left, const QDChatViewModel::Message& right) {
    return dateOf(*left) < dateOf(*right);
}

}  // namespace

QDChatViewModel::QDChatViewModel(std::weak_ptr<const ChatParticipants> participants)
    : participants_(std::move(participants)) {}

void QDChatViewModel::addMessage(const Message& message) {
    if (isDuplicateMessage(*message)) return;
    if (message->hasChatState() && !message->hasComposingChatState()) return;
    // Every other line was frozen when its successor came.
    if (const auto previous = lastMessage()) {
        previous->disabled = true;
        previous->disableChatActionButtons();
    }
    messages_.push_back(message);
    if (message->id) ids_.insert(*message->id);

    const bool isNewest = groups_.empty() || !isEarlier(message, groups_.back().back());
    const auto participants = participants_.lock();
    const bool isUnchanged = participants && participants->participantsRevision() == revision_;
    if (!isUnchanged || !isNewest) {
        groupMessages();
    } else if (isShown(*message)) {
        appendToGroups(message);
    }
}

bool QDChatViewModel::isDuplicateMessage(const QuorrandChatMessage& message) const {
    return message.id && ids_.contains(*message.id);
}

void QDChatViewModel::clearMessages() {
    messages_.clear();
    ids_.clear();
    groupMessages();
}

QDChatViewModel::Message QDChatViewModel::lastMessage() const {
    return messages_.empty() ? nullptr : messages_.back();
}

void QDChatViewModel::groupMessages() {
    groups_.clear();
    if (const auto participants = participants_.lock())
        revision_ = participants->participantsRevision();
    std::vector<Message> shown;
    std::copy_if(messages_.begin(), messages_.end(), std::back_inserter(shown),
                 [this](const Message& message) { return isShown(*message); });
    std::stable_sort(shown.begin(), shown.end(), isEarlier);
    for (const auto& message : shown) appendToGroups(message);
}

bool QDChatViewModel::isShown(const QuorrandChatMessage& message) {
    const auto participants = participants_.lock();
    return participants && participants->isParticipant(message.from);
}

void QDChatViewModel::appendToGroups(const Message& message) {
    const bool opensGroup =
        groups_.empty() || dateOf(*message) > dateOf(*groups_.back().back()) + longestGap;
    if (opensGroup) groups_.emplace_back();
    groups_.back().push_back(message);
}

}  // namespace supportsdk
