#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Queues.h"

namespace supportsdk {

/// A main queue for hosts without a loop of their own. The main thread is the one that runs the
/// loop; before anything ran, the one that created the queue. Starts no thread.
///
/// An exception thrown by posted work leaves through run(), runOne() or poll(); the queue stays
/// usable.
class SUPPORTSDK_API AsioMainQueue final : public MainQueue {
 public:
    AsioMainQueue();
    /// Drops posted work and timers, unrun. Not to be destroyed by work that it runs.
    ~AsioMainQueue() override;
    AsioMainQueue(const AsioMainQueue&) = delete;
    AsioMainQueue& operator=(const AsioMainQueue&) = delete;

    /// Runs posted work and timers, and sleeps in between, until stop(). May be called from inside
    /// posted work; stop() then ends the innermost run().
    void run();

    /// Makes run() return after the work it is at; what is still queued waits for the next run.
    /// When nothing runs, the next run() returns at once. Any thread.
    void stop();

    /// Runs one piece of work, waiting for it at most `limit`; false when none came.
    bool runOne(std::chrono::milliseconds limit);

    /// Runs what is ready without waiting; gives the number of pieces that ran.
    std::size_t poll();

    void post(std::function<void()> work) override;
    [[nodiscard]] Registration after(std::chrono::milliseconds delay,
                                     std::function<void()> work) override;
    [[nodiscard]] bool isCurrent() const override;

 private:
    struct Loop;
    std::unique_ptr<Loop> loop_;
};

}  // namespace supportsdk
