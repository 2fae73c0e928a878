#include "backends/strophe/StreamInbox.h"

#include <iterator>
#include <utility>

namespace supportsdk {

namespace {

constexpr std::size_t capacity = 512;
constexpr std::size_t byteCapacity = std::size_t{4} << 20U;

// Reading goes on before all is handled, or one of the two threads would always wait.
constexpr std::size_t resumeAt = capacity / 2;
constexpr std::size_t resumeAtBytes = byteCapacity / 2;

// A chat line takes some microseconds: with so many, a host that draws 60 times a second does not
// notice.
constexpr std::size_t eventsInOneGo = 64;

constexpr std::size_t fewEvents = 8;

}  // namespace

std::size_t memoryOf(const StreamEvent& event) {
    const auto* stanza = std::get_if<std::shared_ptr<const Stanza>>(&event);
    return stanza ? (*stanza)->memory() : 0;
}

StreamInbox::StreamInbox(std::shared_ptr<MainQueue> queue, std::function<void(StreamEvent)> handler,
                         std::function<void()> drained)
    : queue_(std::move(queue)), handler_(std::move(handler)), drained_(std::move(drained)) {}

void StreamInbox::add(StreamEvent event) {
    ++pending_;
    pendingBytes_ += memoryOf(event);
    std::unique_lock lock(mutex_);
    waiting_.push_back(std::move(event));
    postIfNeeded(std::move(lock));
}

void StreamInbox::add(std::vector<StreamEvent>& events) {
    Events handled;
    pending_ += events.size();
    for (const auto& event : events) pendingBytes_ += memoryOf(event);
    std::unique_lock lock(mutex_);
    handled.swap(handled_);
    if (events.empty()) return;
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
    return pending_ >= capacity || pendingBytes_ >= byteCapacity;
}

bool StreamInbox::refill() {
    if (next_ < current_.size()) return true;
    giveBack();
    const std::lock_guard lock(mutex_);
    current_.swap(waiting_);
    return !current_.empty();
}

void StreamInbox::giveBack() {
    next_ = 0;
    Events events;
    events.swap(current_);
    // Not worth waking anybody up.
    if (events.size() < fewEvents) return;
    {
        const std::lock_guard lock(mutex_);
        handled_.swap(events);
    }
    drained_();
}

void StreamInbox::deliver() {
    const auto self = shared_from_this();
    {
        std::unique_lock lock(mutex_);
        posted_ = false;
        // Before anything is handled: a handler may run a loop of the host's inside, and what waits
        // behind it is to come in there.
        if (current_.size() - next_ + waiting_.size() > 1) postIfNeeded(std::move(lock));
    }
    for (std::size_t handled = 0; handled < eventsInOneGo && !closed_; ++handled) {
        if (!refill()) return;
        // A copy, because the handler's loop may get to the end of the others.
        auto event = current_[next_++];
        const auto left = --pending_;
        const auto bytes = memoryOf(event);
        const auto bytesBefore = pendingBytes_.fetch_sub(bytes);
        const bool hasRoomAgain = left == resumeAt || (bytesBefore >= resumeAtBytes &&
                                                       bytesBefore - bytes < resumeAtBytes);
        handler_(std::move(event));
        if (hasRoomAgain && !closed_) drained_();
    }
    if (!closed_ && next_ == current_.size()) giveBack();
}

}  // namespace supportsdk
