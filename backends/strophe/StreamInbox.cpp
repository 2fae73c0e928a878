#include "backends/strophe/StreamInbox.h"

#include <utility>

namespace supportsdk {

namespace {
constexpr std::size_t capacity = 256;
}

StreamInbox::StreamInbox(std::shared_ptr<MainQueue> queue, std::function<void(StreamEvent)> handler,
                         std::function<void()> drained)
    : queue_(std::move(queue)), handler_(std::move(handler)), drained_(std::move(drained)) {}

void StreamInbox::add(StreamEvent event) {
    {
        const std::lock_guard lock(mutex_);
        waiting_.push_back(std::move(event));
        if (waiting_.size() > 1) return;
    }
    queue_->post([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->deliver();
    });
}

bool StreamInbox::isFull() const {
    const std::lock_guard lock(mutex_);
    return waiting_.size() >= capacity;
}

void StreamInbox::deliver() {
    std::vector<StreamEvent> events;
    {
        const std::lock_guard lock(mutex_);
        events.swap(waiting_);
    }
    for (auto& event : events) {
        if (closed_) return;
        handler_(std::move(event));
    }
    if (!closed_ && events.size() >= capacity) drained_();
}

}  // namespace supportsdk
