#include "supportsdk/proactive/Stack.h"

#include <algorithm>
#include <utility>

namespace supportsdk {

void Stack::push(std::shared_ptr<const Check> check) {
    const std::lock_guard lock(mutex_);
    add(std::move(check));
}

void Stack::pushAll(const Checks& checks) {
    const std::lock_guard lock(mutex_);
    for (const auto& check : checks) add(check);
}

void Stack::add(std::shared_ptr<const Check> check) {
    if (!check) return;
    ++places_[check.get()];
    fileCount_ += check->fileCount();
    byteCount_ += check->byteCount();
    queue_.push_back(std::move(check));
    size_ = queue_.size();
}

void Stack::didRemove(const Check& check, std::size_t places) {
    fileCount_ -= places * check.fileCount();
    byteCount_ -= places * check.byteCount();
    size_ = queue_.size();
}

std::shared_ptr<const Check> Stack::pop() {
    const std::lock_guard lock(mutex_);
    if (queue_.empty()) return nullptr;
    auto last = std::move(queue_.back());
    queue_.pop_back();
    const auto places = places_.extract(last.get()).mapped();
    if (places > 1) std::erase(queue_, last);
    didRemove(*last, places);
    return last;
}

std::shared_ptr<const Check> Stack::take(Queue::iterator place) {
    if (place == queue_.end()) return nullptr;
    auto taken = std::move(*place);
    queue_.erase(place);
    if (--places_[taken.get()] == 0) places_.erase(taken.get());
    didRemove(*taken, 1);
    return taken;
}

std::shared_ptr<const Check> Stack::takeFirst() {
    const std::lock_guard lock(mutex_);
    return take(queue_.begin());
}

std::shared_ptr<const Check> Stack::takeFirstWithFiles() {
    const std::lock_guard lock(mutex_);
    return take(std::find_if(queue_.begin(), queue_.end(),
                             [](const auto& check) { return check->fileCount() > 0; }));
}

Checks Stack::contents() const {
    const std::lock_guard lock(mutex_);
    return {queue_.begin(), queue_.end()};
}

}  // namespace supportsdk
