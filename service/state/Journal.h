#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <set>
#include <string>

#include "supportsdk/platform/Values.h"

namespace supportsdk::service {

/// Which entries somebody wants to see.
struct JournalQuery {
    /// Only entries behind this number.
    std::uint64_t after = 0;
    /// Values of "is"; empty means all.
    std::set<std::string> kinds = {};
    /// Text members that must be equal, such as "comm_id".
    Json where = Json::object();
};

/// What happened, in order, for those who watch from outside: each entry is an object with "seq"
/// (from 1), "at" (milliseconds since the start) and "is". The last 10,000 are kept. Any thread.
class Journal {
 public:
    std::uint64_t append(const std::string& kind, Json entry);

    /// {"results": the matching entries, "next": the number to go on after}. Waits up to `wait` for
    /// the first one.
    [[nodiscard]] Json read(const JournalQuery& query, std::chrono::milliseconds wait) const;

    /// Ends all waiting, now and later.
    void close();

 private:
    [[nodiscard]] Json matching(const JournalQuery& query) const;

    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::deque<Json> entries_;
    std::uint64_t last_ = 0;
    bool closed_ = false;
};

}  // namespace supportsdk::service
