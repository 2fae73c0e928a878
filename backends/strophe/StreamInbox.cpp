#include "backends/strophe/StreamInbox.h"

#include <iterator>
#include <utility>

namespace supportsdk {

namespace {

constexpr std::size_t capacity = 512;

// Reading goes on before all is handled, or one of the two threads would always wait.
constexpr std::size_t resumeAt = capacity / 2;

// A chat line takes some microseconds: with so many, a host that draws 60 times a second does not
// notice.
constexpr std::size_t eventsInOneGo = 64;

}  // namespace

StreamInbox::StreamInbox(std::shared_ptr<MainQueue> queue, std::function<void(StreamEvent)> handler,
                         std::function<void()> drained)
    : queue_(std::move(queue)), handler_(std::move(handler)), drained_(std::move(drained)) {}

void StreamInbox::add(StreamEvent event) {
    std::unique_lock lock(mutex_);
    waiting_.push_back(std::move(event));
    postIfNeeded(std::move(lock));
}

void StreamInbox::add(std::vector<StreamEvent>& events) {
    if (events.empty()) return;
    std::unique_lock lock(mutex_);
    std::move(events.begin(), events.end(), std::back_inserter(waiting_));
    postIfNeeded(std::move(lock));
    events.clear();
}

void StreamInbox::postIfNeeded(std::unique_lock<std::mutex> lock) {
    if (std::exchange(posted_, true)) return;
    lock.unlock();
    queue_->post([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->deliver();
    });
}

bool StreamInbox::isFull() const {
    const std::lock_guard lock(mutex_);
    return waiting_.size() >= capacity;
}

std::optional<StreamEvent> StreamInbox::next() {
    std::optional<StreamEvent> event;
    bool resumes = false;
    {
        const std::lock_guard lock(mutex_);
        if (waiting_.empty()) return std::nullopt;
        event = std::move(waiting_.front());
        waiting_.pop_front();
        resumes = waiting_.size() == resumeAt;
    }
    if (resumes) drained_();
    return event;
}

void StreamInbox::deliver() {
    {
        std::unique_lock lock(mutex_);
        posted_ = false;
        // Before anything is handled: a handler may run a loop of the host's inside, and what waits
        // behind it is to come in there.
        if (waiting_.size() > 1) postIfNeeded(std::move(lock));
    }
    for (std::size_t handled = 0; handled < eventsInOneGo && !closed_; ++handled) {
        auto event = next();
        if (!event) return;
        handler_(std::move(*event));
    }
}

}  // namespace supportsdk
