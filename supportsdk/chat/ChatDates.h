#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "supportsdk/platform/Clock.h"

namespace supportsdk {

/// `date` with seconds and fractions cut off, in the device's time zone. Any thread.
[[nodiscard]] Clock::Time truncatedToMinute(const Clock& clock, Clock::Time date);

/// "2026-01-31 12:00:30" in the device's time zone. Any thread.
[[nodiscard]] std::string dateText(const Clock& clock, Clock::Time date);

/// The moment that "2026-01-31 12:00:30.250" names in the device's time zone; nothing for any other
/// text, and for years outside 1900 to 2199. Any thread.
[[nodiscard]] std::optional<Clock::Time> dateFromFullDateString(const Clock& clock,
                                                                std::string_view text);

}  // namespace supportsdk
