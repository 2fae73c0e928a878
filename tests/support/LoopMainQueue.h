#pragma once

#include <semaphore>

#include "backends/asio/AsioMainQueue.h"

namespace supportsdk::test {

/// A main queue for tests with real threads: whoever makes it is the main thread, and work runs
/// only while that thread pumps.
class LoopMainQueue : public MainQueue {
 public:
    void post(std::function<void()> work) override {
        loop_.post([this, work = std::move(work)] {
            (void)waiting_.try_acquire();
            work();
        });
        waiting_.release();
    }
    [[nodiscard]] Registration after(std::chrono::milliseconds delay,
                                     std::function<void()> work) override {
        return loop_.after(delay, std::move(work));
    }
    [[nodiscard]] bool isCurrent() const override { return loop_.isCurrent(); }

    /// Runs work and timers until `condition` holds; false when `limit` passed first.
    bool pumpUntil(const std::function<bool()>& condition,
                   std::chrono::milliseconds limit = std::chrono::seconds{10}) {
        using Clock = std::chrono::steady_clock;
        const auto deadline = Clock::now() + limit;
        while (!condition()) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
            if (left.count() <= 0) return false;
            loop_.runOne(left);
        }
        return true;
    }
    /// Runs all that comes in within `duration`.
    void pumpFor(std::chrono::milliseconds duration) {
        pumpUntil([] { return false; }, duration);
    }
    /// Waits for work to be posted, without running it; false when `limit` passed first.
    bool waitForPost(std::chrono::milliseconds limit = std::chrono::seconds{10}) {
        return waiting_.try_acquire_for(limit);
    }

 private:
    AsioMainQueue loop_;
    std::counting_semaphore<> waiting_{0};
};

}  // namespace supportsdk::test
