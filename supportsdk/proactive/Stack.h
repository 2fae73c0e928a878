#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>

#include "supportsdk/platform/Export.h"
#include "supportsdk/proactive/Check.h"

namespace supportsdk {

/// Checks that wait, last in first out. Any thread.
class SUPPORTSDK_API Stack {
 public:
    void push(std::shared_ptr<const Check> check);
    void pushAll(const Checks& checks);
    /// Takes the last check, wherever else it stands in the list too: one that was pushed twice
    /// leaves at once. Null from an empty list.
    std::shared_ptr<const Check> pop();

    /// The list at this moment, in the order of pushing.
    [[nodiscard]] Checks contents() const;
    /// Takes no lock.
    [[nodiscard]] std::size_t size() const { return size_.load(); }

 private:
    mutable std::mutex mutex_;
    Checks queue_;  // under mutex_
    std::atomic<std::size_t> size_ = 0;
};

}  // namespace supportsdk
