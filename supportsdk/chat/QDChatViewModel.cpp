#include "supportsdk/chat/QDChatViewModel.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/chat/QuorrandChatMessage.h"

namespace supportsdk {

namespace {

constexpr std::chrono::minutes largestClockDifference{1};

std::pair<std::string, std::string> senderAndText(const QuorrandChatMessage& message) {
    return {message.from.value_or(""), message.text.value_or("")};
}

bool areClose(const QuorrandChatMessage& left, const QuorrandChatMessage& right) {
    // Seconds, because dates may be further apart than the clock's type can count.
    const auto seconds = [](const QuorrandChatMessage& message) {
        return std::chrono::floor<std::chrono::seconds>(message.date.value_or(Clock::Time{}));
    };
    return std::chrono::abs(seconds(left) - seconds(right)) <= largestClockDifference;
}

void freeze(QuorrandChatMessage& message) {
    message.disabled = true;
    message.disableChatActionButtons();
}

}  // namespace

QDChatViewModel::QDChatViewModel(const std::weak_ptr<QuorrandChat>& engine)
    : engine_(engine), groups_(engine) {}

void QDChatViewModel::addMessage(const Message& message) {
    if (!message) return;
    if (isDuplicateMessage(*message) || isRestoredMessage(*message)) {
        forgetHeardLive(*message);
        return;
    }
    if (message->hasChatStateBesidesComposing()) return;
    // Every other line was frozen when its successor came.
    if (!messages_.empty()) freeze(*messages_.back());
    addHistoryEntry(message);
    messages_.push_back(message);
    if (message->id) ids_.insert(*message->id);
    groups_.addLast(messages_);
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
            heardLive_.emplace(senderAndText(*message), message);
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
    const auto [begin, end] = heardLive_.equal_range(senderAndText(message));
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
    removeAll();
    groupMessages();
}

void QDChatViewModel::removeAll() {
    // Not clear(), which would keep the memory of a long chat.
    messages_ = std::vector<Message>();
    ids_ = decltype(ids_)();
    heardLive_ = HeardLive();
}

QDChatViewModel::Message QDChatViewModel::lastMessage() const {
    return messages_.empty() ? nullptr : messages_.back();
}

void QDChatViewModel::groupMessages() {
    groups_.rebuild(messages_);
}

void QDChatViewModel::participantsDidChange() {
    if (!groups_.isCurrent()) groupMessages();
}

void QDChatViewModel::addHistoryEntry(const Message& message) {
    const auto engine = engine_.lock();
    if (!isLocalHistory || !message || !engine || !engine->commId) return;
    history_.addEntry(*engine->defaults, *engine->commId, message->dict());
}

void QDChatViewModel::loadHistory() {
    const auto engine = engine_.lock();
    if (!isLocalHistory || !engine || !engine->commId) return;
    const auto stored = history_.load(*engine->defaults, *engine->commId);
    if (!stored) return;
    removeAll();
    groups_.invalidate();
    for (const auto& entry : *stored) {
        if (!entry.is_object()) continue;
        const auto line = QuorrandChatMessage::createWithDict(*engine, entry);
        if (!messages_.empty()) freeze(*messages_.back());
        if (line->id) ids_.insert(*line->id);
        messages_.push_back(line);
    }
}

}  // namespace supportsdk
