#pragma once

#include <atomic>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "supportsdk/platform/Export.h"
#include "supportsdk/proactive/Check.h"

namespace supportsdk {

/// Checks that wait, last in first out. A check equals itself alone. Any thread.
class SUPPORTSDK_API Stack {
 public:
    /// Null is not pushed.
    void push(std::shared_ptr<const Check> check);
    void pushAll(const Checks& checks);
    /// Takes the last check, wherever else it stands in the list too: one that was pushed twice
    /// leaves at once. Null from an empty list.
    std::shared_ptr<const Check> pop();
    /// Takes the first check, whose turn would come last, from its first place alone. Null from an
    /// empty list.
    std::shared_ptr<const Check> takeFirst();

    /// The list at this moment, in the order of pushing.
    [[nodiscard]] Checks contents() const;
    /// Takes no lock.
    [[nodiscard]] std::size_t size() const { return size_.load(); }

 private:
    void add(std::shared_ptr<const Check> check);

    mutable std::mutex mutex_;
    std::deque<std::shared_ptr<const Check>> queue_;  // under mutex_
    /// How often each check stands in the list: without it, each pop() would have to search all of
    /// the list for a check that is nearly always there once.
    std::unordered_map<const Check*, std::size_t> places_;  // under mutex_
    std::atomic<std::size_t> size_ = 0;
};

}  // namespace supportsdk
