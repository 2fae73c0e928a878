#include "backends/system/SystemClock.h"

#include <algorithm>

namespace supportsdk {

Clock::Time SystemClock::now() const {
    return std::chrono::system_clock::now();
}

std::tm SystemClock::local(Time time) const {
    // Rounded down, so that moments before 1970 keep their second.
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time).time_since_epoch();
    const std::time_t moment = seconds.count();
    std::tm parts{};
    localtime_r(&moment, &parts);
    return parts;
}

Clock::Time SystemClock::fromLocal(const std::tm& parts) const {
    std::tm copy = parts;
    copy.tm_isdst = -1;
    const auto floor = std::chrono::ceil<std::chrono::seconds>(Time::min().time_since_epoch());
    const auto ceiling = std::chrono::floor<std::chrono::seconds>(Time::max().time_since_epoch());
    const std::chrono::seconds moment(std::mktime(&copy));
    return Time(std::clamp(moment, floor, ceiling));
}

}  // namespace supportsdk
