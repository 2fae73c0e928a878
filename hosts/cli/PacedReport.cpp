#include "hosts/cli/PacedReport.h"

#include <algorithm>

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

void PacedReport::run() {
    const auto begin = now_();
    report_();
    const auto end = now_();
    notBefore_ = end + std::min<std::chrono::steady_clock::duration>((end - begin) * pauseToReport,
                                                                     longestPause);
}

}  // namespace supportsdk::host
