#include "supportsdk/chat/SentLines.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace supportsdk {

void SentLines::add(std::string id, std::string nickname, std::string text, Registration overdue) {
    lines_.push_back(
        {std::move(id), std::move(nickname), std::move(text), std::move(overdue), false});
}

void SentLines::confirm(const std::string& id, const std::string& sender,
                        const std::string& nickname) {
    const auto line = std::find_if(lines_.begin(), lines_.end(),
                                   [&](const Line& candidate) { return candidate.id == id; });
    if (line == lines_.end()) return;
    if (sender == line->nickname || sender == nickname) lines_.erase(line);
}

void SentLines::stopWatching() {
    for (auto& line : lines_) line.overdue.reset();
}

void SentLines::doubtAll() {
    stopWatching();
    for (auto& line : lines_) line.isDoubtful = true;
}

SentLines::Texts SentLines::takeRefused(const std::string& id) {
    return take([&](const Line& line) { return line.id == id; });
}

SentLines::Texts SentLines::takeDoubtful() {
    return take([](const Line& line) { return line.isDoubtful; });
}

SentLines::Texts SentLines::takeAll() {
    return take([](const Line&) { return true; });
}

template <typename Condition>
SentLines::Texts SentLines::take(Condition condition) {
    const auto taken = std::stable_partition(lines_.begin(), lines_.end(), std::not_fn(condition));
    Texts texts;
    for (auto line = taken; line != lines_.end(); ++line) texts.push_back(std::move(line->text));
    lines_.erase(taken, lines_.end());
    return texts;
}

}  // namespace supportsdk
