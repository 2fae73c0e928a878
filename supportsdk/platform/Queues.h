#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "supportsdk/platform/Registration.h"

namespace supportsdk {

/// The host's main thread, as the kit sees it. All state of the kit but what docs/threads.md
/// excepts lives there. The kit never runs the loop: the host does, with a loop of its own or with
/// backends/asio.
class MainQueue {
 public:
    virtual ~MainQueue() = default;

    /// Runs `work` on the main thread, after everything posted before it. Never runs it inside the
    /// call. Any thread. Work that is still waiting when the queue is destroyed is dropped, unrun.
    virtual void post(std::function<void()> work) = 0;

    /// Runs `work` once on the main thread, no sooner than `delay` from now. Dropping the result
    /// cancels it; once cancelled on the main thread it does not run any more. Main thread only.
    [[nodiscard]] virtual Registration after(std::chrono::milliseconds delay,
                                             std::function<void()> work) = 0;

    /// Whether the caller is on the main thread. Any thread.
    [[nodiscard]] virtual bool isCurrent() const = 0;
};

/// Runs what is posted one after the other, off the main thread.
class SerialQueue {
 public:
    virtual ~SerialQueue() = default;

    /// Any thread; in the order of posting. Never runs `work` inside the call.
    virtual void post(std::function<void()> work) = 0;
};

/// Work off the main thread. Threads are started with the first use, not before.
class BackgroundQueue {
 public:
    virtual ~BackgroundQueue() = default;

    /// Runs `work` on some background thread, in no promised order. Any thread.
    virtual void post(std::function<void()> work) = 0;

    /// A serial queue with `label` as its thread's name where the system shows one. Its pending
    /// work is dropped with it; work that runs at that moment is waited for, unless it is this work
    /// that drops it.
    [[nodiscard]] virtual std::shared_ptr<SerialQueue> makeSerialQueue(
        const std::string& label) = 0;
};

}  // namespace supportsdk
