#include "service/state/Journal.h"

#include <algorithm>

#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

constexpr std::size_t maximumEntries = 10'000;

bool matches(const Json& entry, const JournalQuery& query) {
    if (!query.kinds.empty() && !query.kinds.contains(stringForKey(entry, "is").value_or("")))
        return false;
    return std::all_of(query.where.items().begin(), query.where.items().end(),
                       [&entry](const auto& item) {
                           const auto* value = valueForKey(entry, item.key());
                           return value && *value == item.value();
                       });
}

}  // namespace

std::uint64_t Journal::append(const std::string& kind, Json entry) {
    using std::chrono::milliseconds;
    const auto age = std::chrono::steady_clock::now() - start_;
    const std::lock_guard lock(mutex_);
    entry["is"] = kind;
    entry["seq"] = ++last_;
    entry["at"] = std::chrono::duration_cast<milliseconds>(age).count();
    entries_.push_back(std::move(entry));
    if (entries_.size() > maximumEntries) entries_.pop_front();
    changed_.notify_all();
    return last_;
}

Json Journal::matching(const JournalQuery& query) const {
    const auto first = last_ - entries_.size();
    const auto skipped = query.after > first ? std::min(query.after - first, last_ - first) : 0;
    Json results = Json::array();
    std::copy_if(entries_.begin() + static_cast<std::ptrdiff_t>(skipped), entries_.end(),
                 std::back_inserter(results),
                 [&query](const Json& entry) { return matches(entry, query); });
    return results;
}

Json Journal::read(const JournalQuery& query, std::chrono::milliseconds wait) const {
    std::unique_lock lock(mutex_);
    Json results;
    changed_.wait_for(lock, wait, [&] {
        results = matching(query);
        return closed_ || !results.empty();
    });
    return {{"results", std::move(results)}, {"next", std::max(last_, query.after)}};
}

void Journal::close() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    changed_.notify_all();
}

}  // namespace supportsdk::service
