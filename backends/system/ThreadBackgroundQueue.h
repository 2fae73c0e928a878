#pragma once

#include <memory>
#include <string>

#include "supportsdk/platform/Queues.h"

namespace supportsdk {

class WorkerThreads;

/// Background work on a few threads of its own, each started when there is work and no thread free
/// for it. They block all signals, so the host's handlers run on the host's threads, and sleep
/// while there is nothing to do.
///
/// Destroying it drops what waits and returns when what runs is done; work that runs on it may
/// destroy it too. Work must not throw. When the system gives no thread, work waits until a later
/// post gets one.
class ThreadBackgroundQueue final : public BackgroundQueue {
 public:
    /// Enough for slow name look-ups not to hold up each other.
    static constexpr std::size_t maximumThreads = 4;

    ThreadBackgroundQueue();
    ~ThreadBackgroundQueue() override;

    void post(std::function<void()> work) override;
    [[nodiscard]] std::shared_ptr<SerialQueue> makeSerialQueue(const std::string& label) override;

 private:
    std::unique_ptr<WorkerThreads> threads_;
};

}  // namespace supportsdk
