#include "supportsdk/chat/UnsentTexts.h"

#include <algorithm>
#include <utility>

namespace supportsdk {

namespace {
constexpr std::size_t capacity = 100;
}

void UnsentTexts::keep(const Conversation& conversation, const Texts& texts) {
    for (const auto& text : texts) entries_.push_back({conversation, text});
    while (entries_.size() > capacity) entries_.pop_front();
}

UnsentTexts::Texts UnsentTexts::take(const Conversation& conversation) {
    const auto taken = std::stable_partition(
        entries_.begin(), entries_.end(),
        [&](const Entry& entry) { return entry.conversation != conversation; });
    Texts texts;
    for (auto entry = taken; entry != entries_.end(); ++entry)
        texts.push_back(std::move(entry->text));
    entries_.erase(taken, entries_.end());
    return texts;
}

}  // namespace supportsdk
