#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include "supportsdk/platform/Queues.h"

namespace supportsdk::test {

/// A main queue for tests with real threads: whoever makes it is the main thread, and work runs
/// only while that thread pumps.
class LoopMainQueue : public MainQueue {
 public:
    using Clock = std::chrono::steady_clock;

    void post(std::function<void()> work) override {
        const std::lock_guard lock(mutex_);
        posted_.push_back(std::move(work));
        wake_.notify_one();
    }

    [[nodiscard]] Registration after(std::chrono::milliseconds delay,
                                     std::function<void()> work) override {
        const auto timer =
            timers_->emplace(Clock::now() + delay, Timer{++lastTimer_, std::move(work)});
        return Registration([timers = std::weak_ptr(timers_), due = timer->first, id = lastTimer_] {
            const auto held = timers.lock();
            if (!held) return;
            const auto [first, last] = held->equal_range(due);
            for (auto each = first; each != last; ++each) {
                if (each->second.id == id) {
                    held->erase(each);
                    return;
                }
            }
        });
    }

    [[nodiscard]] bool isCurrent() const override { return std::this_thread::get_id() == owner_; }

    /// Runs work and timers until `condition` holds; false when `limit` passed first.
    bool pumpUntil(const std::function<bool()>& condition,
                   std::chrono::milliseconds limit = std::chrono::seconds{10}) {
        const auto deadline = Clock::now() + limit;
        while (!condition()) {
            if (Clock::now() >= deadline) return false;
            runOne(deadline);
        }
        return true;
    }

    /// Runs all that comes in within `duration`.
    void pumpFor(std::chrono::milliseconds duration) {
        pumpUntil([] { return false; }, duration);
    }

    /// Waits for work to be posted, without running it; false when `limit` passed first.
    bool waitForPost(std::chrono::milliseconds limit = std::chrono::seconds{10}) {
        std::unique_lock lock(mutex_);
        return wake_.wait_until(lock, Clock::now() + limit, [this] { return !posted_.empty(); });
    }

 private:
    struct Timer {
        int id;
        std::function<void()> work;
    };
    using Timers = std::multimap<Clock::time_point, Timer>;

    void runOne(Clock::time_point deadline) {
        const auto due = timers_->empty() ? deadline : std::min(deadline, timers_->begin()->first);
        if (auto work = nextPosted(due)) {
            work();
        } else if (!timers_->empty() && timers_->begin()->first <= Clock::now()) {
            const auto timer = timers_->extract(timers_->begin());
            timer.mapped().work();
        }
    }

    std::function<void()> nextPosted(Clock::time_point until) {
        std::unique_lock lock(mutex_);
        if (!wake_.wait_until(lock, until, [this] { return !posted_.empty(); })) return nullptr;
        auto work = std::move(posted_.front());
        posted_.pop_front();
        return work;
    }

    const std::thread::id owner_ = std::this_thread::get_id();
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> posted_;
    std::shared_ptr<Timers> timers_ = std::make_shared<Timers>();  // main thread
    int lastTimer_ = 0;
};

}  // namespace supportsdk::test
