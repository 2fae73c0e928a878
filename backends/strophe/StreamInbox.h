#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <variant>
#include <vector>

#include "supportsdk/platform/Queues.h"
#include "supportsdk/platform/Stanza.h"
#include "supportsdk/platform/XmppStream.h"

namespace supportsdk {

struct StreamAuthenticated {
    std::string jid;
};
using StreamEvent = std::variant<StreamAuthenticated, std::shared_ptr<const Stanza>, XmppStreamEnd>;

/// Bytes that the stanza of an event takes, about; 0 without one.
[[nodiscard]] std::size_t memoryOf(const StreamEvent& event);

/// Carries what happens on the stream's thread to the main thread, in order: many events with one
/// post, but never so many that the host's other work waits long.
class StreamInbox : public std::enable_shared_from_this<StreamInbox> {
 public:
    /// `handler` gets the events on the main thread. `drained` is called there to wake the
    /// stream's thread up: when a full inbox has room again, or handled events wait to be freed.
    StreamInbox(std::shared_ptr<MainQueue> queue, std::function<void(StreamEvent)> handler,
                std::function<void()> drained);

    /// Any thread.
    void add(StreamEvent event);
    /// All of `events`, which is empty afterwards. Also frees what has been handled, so it is to be
    /// called now and then with none, too. The stream's thread.
    void add(std::vector<StreamEvent>& events);

    /// So much waits for the main thread, 512 events or 4 MiB, that no more should be read. Any
    /// thread.
    [[nodiscard]] bool isFull() const;

    /// No event is handled any more. Main thread.
    void close() { closed_ = true; }

 private:
    using Events = std::vector<StreamEvent>;

    /// Gives the lock back.
    void postIfNeeded(std::unique_lock<std::mutex> lock);
    void deliver();
    /// False when nothing waits. Main thread.
    [[nodiscard]] bool refill();
    void giveBack();

    const std::shared_ptr<MainQueue> queue_;
    const std::function<void(StreamEvent)> handler_;
    const std::function<void()> drained_;
    std::atomic<std::size_t> pending_ = 0;
    std::atomic<std::size_t> pendingBytes_ = 0;
    mutable std::mutex mutex_;
    Events waiting_;
    /// Handled ones, freed by the thread that made them: from another thread that costs more than
    /// making them, because the two get into each other's way in the allocator.
    Events handled_;
    bool posted_ = false;
    // Main thread:
    Events current_;
    std::size_t next_ = 0;
    bool closed_ = false;
};

}  // namespace supportsdk
