#pragma once

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

/// Carries what happens on the stream's thread to the main thread, in order, many events with one
/// post.
class StreamInbox : public std::enable_shared_from_this<StreamInbox> {
 public:
    /// `handler` gets the events on the main thread. `drained` is called there after the inbox was
    /// full.
    StreamInbox(std::shared_ptr<MainQueue> queue, std::function<void(StreamEvent)> handler,
                std::function<void()> drained);

    /// Any thread.
    void add(StreamEvent event);

    /// So much waits for the main thread that no more should be read. Any thread.
    [[nodiscard]] bool isFull() const;

    /// No event is handled any more. Main thread.
    void close() { closed_ = true; }

 private:
    void deliver();

    const std::shared_ptr<MainQueue> queue_;
    const std::function<void(StreamEvent)> handler_;
    const std::function<void()> drained_;
    mutable std::mutex mutex_;
    std::vector<StreamEvent> waiting_;
    bool closed_ = false;  // main thread
};

}  // namespace supportsdk
