#include "hosts/cli/PacedReport.h"

#include <algorithm>
#include <utility>

namespace supportsdk::host {

namespace {

constexpr int pauseToReport = 4;
constexpr std::chrono::seconds longestPause{2};

}  // namespace

void PacedReport::ask() {
    if (isWaiting_) return;
    const auto remaining = notBefore_ - now_();
    if (remaining.count() <= 0) return run();
    isWaiting_ = true;
    timer_ = queue_->after(std::chrono::ceil<std::chrono::milliseconds>(remaining), [this] {
        isWaiting_ = false;
        run();
    });
}

void PacedReport::finish() {
    if (!std::exchange(isWaiting_, false)) return;
    timer_ = {};
    run();
}

void PacedReport::run() {
    const auto begin = now_();
    report_();
    const auto end = now_();
    notBefore_ = end + std::clamp<std::chrono::steady_clock::duration>(
                           (end - begin) * pauseToReport, shortestPause_, longestPause);
}

}  // namespace supportsdk::host
