#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
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

/// Carries what happens on the stream's thread to the main thread, in order: many events with one
/// post, but never so many that the host's other work waits long.
class StreamInbox : public std::enable_shared_from_this<StreamInbox> {
 public:
    /// `handler` gets the events on the main thread. `drained` is called there when so much of a
    /// full inbox is handled that reading may go on.
    StreamInbox(std::shared_ptr<MainQueue> queue, std::function<void(StreamEvent)> handler,
                std::function<void()> drained);

    /// Any thread.
    void add(StreamEvent event);
    /// All of `events`, which is empty afterwards. Any thread.
    void add(std::vector<StreamEvent>& events);

    /// So much waits for the main thread that no more should be read. Any thread.
    [[nodiscard]] bool isFull() const;

    /// No event is handled any more. Main thread.
    void close() { closed_ = true; }

 private:
    /// Gives the lock back.
    void postIfNeeded(std::unique_lock<std::mutex> lock);

    void deliver();
    [[nodiscard]] std::optional<StreamEvent> next();

    const std::shared_ptr<MainQueue> queue_;
    const std::function<void(StreamEvent)> handler_;
    const std::function<void()> drained_;
    mutable std::mutex mutex_;
    std::deque<StreamEvent> waiting_;
    bool posted_ = false;
    bool closed_ = false;  // main thread
};

}  // namespace supportsdk
