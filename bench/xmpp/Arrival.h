#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string_view>
#include <thread>
#include <vector>

namespace supportsdk::bench {

/// Notes when the last byte of a message has reached the server.
struct Arrival {
    using Clock = std::chrono::steady_clock;

    void heard(std::string_view text) {
        if (text.ends_with("</message>")) at.store(Clock::now().time_since_epoch().count());
    }
    /// In microseconds.
    [[nodiscard]] double sendAndWait(const std::function<void()>& send) {
        // A person types into an idle link.
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
        at = 0;
        const auto start = Clock::now();
        send();
        while (at == 0) std::this_thread::yield();
        const Clock::duration end{at.load()};
        return std::chrono::duration<double, std::micro>(end - start.time_since_epoch()).count();
    }
    std::atomic<Clock::rep> at = 0;
};

/// Gives the median.
inline double printTimes(const char* name, std::vector<double> times) {
    std::sort(times.begin(), times.end());
    const auto median = times[times.size() / 2];
    std::printf("send to arrival, %s: median %.0f us, p99 %.0f us (%zu sends)\n", name, median,
                times[times.size() * 99 / 100], times.size());
    return median;
}

}  // namespace supportsdk::bench
