#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "supportsdk/platform/Queues.h"

namespace supportsdk::host {

/// Runs a report whenever it is asked for, but for no more than a fifth of the time: after one that
/// took long comes a pause of four times as much, at most two seconds, and all that ask within it
/// get one report at its end. So a chat of many thousand lines that grows line by line is not
/// written out for each of them. What is quick to report and changes all the time also gets a
/// `shortestPause`. Main thread.
class PacedReport {
 public:
    using Now = std::function<std::chrono::steady_clock::time_point()>;

    PacedReport(std::shared_ptr<MainQueue> queue, std::function<void()> report,
                std::chrono::milliseconds shortestPause = {},
                Now now = std::chrono::steady_clock::now)
        : queue_(std::move(queue)),
          report_(std::move(report)),
          shortestPause_(shortestPause),
          now_(std::move(now)) {}

    /// Reports before it returns, or soon.
    void ask();
    /// A report that waits for its pause comes now.
    void finish();

 private:
    void run();

    const std::shared_ptr<MainQueue> queue_;
    const std::function<void()> report_;
    const std::chrono::milliseconds shortestPause_;
    const Now now_;
    std::chrono::steady_clock::time_point notBefore_;
    bool isWaiting_ = false;
    Registration timer_;
};

}  // namespace supportsdk::host
