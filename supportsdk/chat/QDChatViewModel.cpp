#include "supportsdk/chat/QDChatViewModel.h"

#include <algorithm>
#include <chrono>
#include <iterator>

namespace supportsdk {

namespace {

constexpr std::chrono::seconds longestGap{120};
constexpr std::chrono::minutes largestClockDifference{1};

/// Lines without a date come first.
Clock::Time dateOf(const QuorrandChatMessage& message) {
    return message.date.value_or(Clock::Time{});
}

std::string words(const QuorrandChatMessage& message) {
    // No zero byte can be in either.
    return message.from.value_or("") + '\0' + message.text.value_or("");
}

bool areClose(const QuorrandChatMessage& left, const QuorrandChatMessage& right) {
    // Seconds, because dates may be further apart than the clock's type can count.
    const auto seconds = [](const QuorrandChatMessage& message) {
        return std::chrono::floor<std::chrono::seconds>(dateOf(message));
    };
    return std::chrono::abs(seconds(left) - seconds(right)) <= largestClockDifference;
}

void freeze(QuorrandChatMessage& message) {
    message.disabled = true;
    message.disableChatActionButtons();
}

bool isEarlier(const QDChatViewModel::Message& left, const QDChatViewModel::Message& right) {
    return dateOf(*left) < dateOf(*right);
}

}  // namespace

QDChatViewModel::QDChatViewModel(std::weak_ptr<const ChatParticipants> participants)
    : participants_(std::move(participants)) {}

void QDChatViewModel::addMessage(const Message& message) {
    if (isDuplicateMessage(*message) || isRestoredMessage(*message)) {
        forgetHeardLive(*message);
        return;
    }
    if (message->hasChatState() && !message->hasComposingChatState()) return;
    // Every other line was frozen when its successor came.
    if (!messages_.empty()) freeze(*messages_.back());
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

void QDChatViewModel::restoreMessages(std::vector<Message> earlier) {
    earlier.erase(std::remove_if(earlier.begin(), earlier.end(),
                                 [this](const Message& message) {
                                     return !message ||
                                            (message->id && !ids_.insert(*message->id).second);
                                 }),
                  earlier.end());
    for (const auto& message : earlier) {
        if (!message->isDelayed && message->hasComputedId)
            heardLive_.emplace(words(*message), message);
        if (!messages_.empty() || message != earlier.back()) freeze(*message);
    }
    messages_.insert(messages_.begin(), std::make_move_iterator(earlier.begin()),
                     std::make_move_iterator(earlier.end()));
    groupMessages();
}

bool QDChatViewModel::isRestoredMessage(const QuorrandChatMessage& message) const {
    return findHeardLive(message) != heardLive_.end();
}

QDChatViewModel::HeardLive::const_iterator QDChatViewModel::findHeardLive(
    const QuorrandChatMessage& message) const {
    if (heardLive_.empty() || !message.isDelayed || !message.hasComputedId) return heardLive_.end();
    const auto [begin, end] = heardLive_.equal_range(words(message));
    const auto sameId =
        std::find_if(begin, end, [&](const auto& one) { return one.second->id == message.id; });
    if (sameId != end) return sameId;
    const auto sameMoment =
        std::find_if(begin, end, [&](const auto& one) { return areClose(*one.second, message); });
    return sameMoment == end ? heardLive_.end() : sameMoment;
}

void QDChatViewModel::forgetHeardLive(const QuorrandChatMessage& message) {
    const auto found = findHeardLive(message);
    if (found == heardLive_.end()) return;
    // The history may be asked for again.
    ids_.insert(*message.id);
    heardLive_.erase(found);
}

void QDChatViewModel::clearMessages() {
    messages_.clear();
    ids_.clear();
    heardLive_.clear();
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
