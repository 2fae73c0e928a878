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

QDChatViewModel::QDChatViewModel(IsParticipant isParticipant)
    : isParticipant_(std::move(isParticipant)) {}

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
    if (!sendersAreUnchanged() || !isNewest) {
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
    senders_.clear();
    std::vector<Message> shown;
    std::copy_if(messages_.begin(), messages_.end(), std::back_inserter(shown),
                 [this](const Message& message) { return isShown(*message); });
    std::stable_sort(shown.begin(), shown.end(), isEarlier);
    for (const auto& message : shown) appendToGroups(message);
}

bool QDChatViewModel::isShown(const QuorrandChatMessage& message) {
    const auto [known, isNew] = senders_.try_emplace(message.from.value_or(""), false);
    if (isNew) known->second = isParticipant_(known->first);
    return known->second;
}

bool QDChatViewModel::sendersAreUnchanged() const {
    return std::all_of(senders_.begin(), senders_.end(), [this](const auto& sender) {
        return isParticipant_(sender.first) == sender.second;
    });
}

void QDChatViewModel::appendToGroups(const Message& message) {
    const bool opensGroup =
        groups_.empty() || dateOf(*message) > dateOf(*groups_.back().back()) + longestGap;
    if (opensGroup) groups_.emplace_back();
    groups_.back().push_back(message);
}

}  // namespace supportsdk
