#pragma once

#include <functional>
#include <memory>
#include <thread>

#include "supportsdk/platform/Queues.h"
#include "supportsdk/proactive/Dump.h"

namespace supportsdk::host {

/// One packing or unpacking, on a thread of its own.
class DumpJob {
 public:
    struct Handlers {
        /// How far it is, as often as the main thread gets round to it.
        std::function<void(const DumpProgress&)> progress;
        /// Runs once, last; it may destroy the job.
        std::function<void(const DumpResult&)> done;
    };
    using Work = std::function<DumpResult(const DumpOptions&)>;

    /// Handlers run on the main thread, and not after the job is destroyed. Throws
    /// std::system_error when the system gives no thread.
    DumpJob(std::shared_ptr<MainQueue> queue, Work work, Handlers handlers);
    /// Cancels and waits, so that nothing half done stays behind.
    ~DumpJob() = default;
    DumpJob(const DumpJob&) = delete;
    DumpJob& operator=(const DumpJob&) = delete;

    void cancel() { thread_.request_stop(); }

 private:
    struct Shared;
    static DumpResult run(const std::shared_ptr<Shared>& shared, MainQueue& queue, const Work& work,
                          std::stop_token stop);

    std::shared_ptr<Shared> shared_;
    std::jthread thread_;  // ends before the rest does
};

}  // namespace supportsdk::host
