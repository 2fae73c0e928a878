#include "supportsdk/launcher/CachedClock.h"

#include <chrono>

namespace supportsdk {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

Clock::Time CachedClock::fromLocal(const std::tm& parts) const {
    const bool isWithinDay = parts.tm_hour >= 0 && parts.tm_hour < 24 && parts.tm_min >= 0 &&
                             parts.tm_min < 60 && parts.tm_sec >= 0 && parts.tm_sec < 60;
    const bool isDay = parts.tm_year >= 0 && parts.tm_year < 300 && parts.tm_mon >= 0 &&
                       parts.tm_mon < 12 && parts.tm_mday > 0 && parts.tm_mday < 32;
    if (!isWithinDay || !isDay) return clock_->fromLocal(parts);
    const int day = (parts.tm_year * 12 + parts.tm_mon) * 32 + parts.tm_mday;
    const auto [known, isNew] = days_.try_emplace(day);
    if (isNew) known->second = startOfPlainDay(parts);
    if (!known->second) return clock_->fromLocal(parts);
    return *known->second + hours{parts.tm_hour} + minutes{parts.tm_min} + seconds{parts.tm_sec};
}

/// Changes of the offset are days apart, and none is larger than a day: where it is the same a day
/// before and a day after, every local time of the day comes once and at its place.
std::optional<Clock::Time> CachedClock::startOfPlainDay(const std::tm& parts) const {
    std::tm midnight{};
    midnight.tm_year = parts.tm_year;
    midnight.tm_mon = parts.tm_mon;
    midnight.tm_mday = parts.tm_mday;
    const auto start = clock_->fromLocal(midnight);
    const bool isPlain =
        clock_->local(start - hours{24}).tm_gmtoff == clock_->local(start + hours{48}).tm_gmtoff;
    return isPlain ? std::optional(start) : std::nullopt;
}

}  // namespace supportsdk
