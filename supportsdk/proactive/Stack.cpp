#include "supportsdk/proactive/Stack.h"

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
    queue_.push_back(std::move(check));
    size_ = queue_.size();
}

std::shared_ptr<const Check> Stack::pop() {
    const std::lock_guard lock(mutex_);
    if (queue_.empty()) return nullptr;
    auto last = std::move(queue_.back());
    queue_.pop_back();
    if (places_.extract(last.get()).mapped() > 1) std::erase(queue_, last);
    size_ = queue_.size();
    return last;
}

std::shared_ptr<const Check> Stack::takeFirst() {
    const std::lock_guard lock(mutex_);
    if (queue_.empty()) return nullptr;
    auto first = std::move(queue_.front());
    queue_.pop_front();
    if (--places_[first.get()] == 0) places_.erase(first.get());
    size_ = queue_.size();
    return first;
}

Checks Stack::contents() const {
    const std::lock_guard lock(mutex_);
    return {queue_.begin(), queue_.end()};
}

}  // namespace supportsdk
