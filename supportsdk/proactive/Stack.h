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
    /// The same of those that hold files.
    std::shared_ptr<const Check> takeFirstWithFiles();

    /// The list at this moment, in the order of pushing.
    [[nodiscard]] Checks contents() const;
    /// Takes no lock.
    [[nodiscard]] std::size_t size() const { return size_.load(); }
    /// The files and the bytes of text of all checks; they take no lock.
    [[nodiscard]] std::size_t fileCount() const { return fileCount_.load(); }
    [[nodiscard]] std::size_t byteCount() const { return byteCount_.load(); }

 private:
    using Queue = std::deque<std::shared_ptr<const Check>>;

    void add(std::shared_ptr<const Check> check);
    std::shared_ptr<const Check> take(Queue::iterator place);
    void didRemove(const Check& check, std::size_t places);

    mutable std::mutex mutex_;
    Queue queue_;  // under mutex_
    /// How often each check stands in the list: without it, each pop() would have to search all of
    /// the list for a check that is nearly always there once.
    std::unordered_map<const Check*, std::size_t> places_;  // under mutex_
    std::atomic<std::size_t> size_ = 0;
    std::atomic<std::size_t> fileCount_ = 0;
    std::atomic<std::size_t> byteCount_ = 0;
};

}  // namespace supportsdk
