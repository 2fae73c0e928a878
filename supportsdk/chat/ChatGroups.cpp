#include "supportsdk/chat/ChatGroups.h"

#include <algorithm>
#include <chrono>
#include <iterator>

namespace supportsdk {

namespace {

using Message = ChatGroups::Message;
using Group = ChatGroups::Group;

constexpr std::chrono::seconds longestGap{120};

Clock::Time dateOf(const Message& line) {
    return line->date.value_or(Clock::Time{});
}

bool isOneGroup(Clock::Time earlier, Clock::Time later) {
    return later <= earlier + longestGap;
}

/// Where a line of this date belongs. Nearly every line is the newest of its list: no search then.
Group::iterator positionAfter(Group& group, Clock::Time date) {
    if (dateOf(group.back()) <= date) return group.end();
    return std::upper_bound(
        group.begin(), group.end(), date,
        [](Clock::Time wanted, const Message& line) { return wanted < dateOf(line); });
}

/// The first group that begins later than this date.
std::vector<Group>::iterator groupAfter(std::vector<Group>& groups, Clock::Time date) {
    if (groups.empty() || dateOf(groups.back().front()) <= date) return groups.end();
    return std::upper_bound(
        groups.begin(), groups.end(), date,
        [](Clock::Time wanted, const Group& group) { return wanted < dateOf(group.front()); });
}

void append(Group& group, Group& other) {
    group.insert(group.end(), std::make_move_iterator(other.begin()),
                 std::make_move_iterator(other.end()));
}

}  // namespace

ChatGroups::ChatGroups(std::weak_ptr<const ChatParticipants> participants)
    : participants_(std::move(participants)) {}

bool ChatGroups::isCurrent() const {
    const auto participants = participants_.lock();
    return participants && participants->participantsRevision() == revision_;
}

void ChatGroups::addLast(const std::vector<Message>& lines) {
    if (!isCurrent()) return rebuild(lines);
    if (participants_.lock()->isParticipant(lines.back()->from)) insert(lines.back());
}

void ChatGroups::rebuild(const std::vector<Message>& lines) {
    // Not clear(), which would keep the memory of a long chat.
    groups_ = std::vector<Group>();
    revision_.reset();
    const auto participants = participants_.lock();
    if (!participants) return;
    revision_ = participants->participantsRevision();
    Group shown;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(shown),
                 [&](const Message& line) { return participants->isParticipant(line->from); });
    const auto isEarlier = [](const Message& left, const Message& right) {
        return dateOf(left) < dateOf(right);
    };
    // Looked at first, because lines nearly always arrive in their order, and a sort would touch
    // each of them many times.
    if (!std::is_sorted(shown.begin(), shown.end(), isEarlier))
        std::stable_sort(shown.begin(), shown.end(), isEarlier);
    for (const auto& line : shown) insert(line);
}

void ChatGroups::insert(const Message& line) {
    const auto date = dateOf(line);
    const auto next = groupAfter(groups_, date);
    const bool joinsNext = next != groups_.end() && isOneGroup(date, dateOf(next->front()));
    if (next != groups_.begin()) {
        auto& group = *std::prev(next);
        if (isOneGroup(dateOf(group.back()), date)) {
            group.insert(positionAfter(group, date), line);
            if (!joinsNext) return;
            append(group, *next);
            groups_.erase(next);
            return;
        }
    }
    if (joinsNext) {
        next->insert(next->begin(), line);
    } else {
        groups_.insert(next, {line});
    }
}

}  // namespace supportsdk
