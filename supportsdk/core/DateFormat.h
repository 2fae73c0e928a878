#pragma once

#include <string>
#include <string_view>

#include "supportsdk/platform/Clock.h"
#include "supportsdk/platform/Export.h"

namespace supportsdk {

/// `date` in the device's time zone by a pattern of Unicode date fields (UTS #35): y, M, d, H, h,
/// m, s, S and a, as often as they are to have digits. Text between single quotes stands as it is;
/// two quotes are one, inside quoted text and outside. Other letters stand for themselves, and a
/// quote that is never closed ends with the pattern. Any thread.
SUPPORTSDK_API std::string formattedDate(const Clock& clock, Clock::Time date,
                                         std::string_view pattern);

}  // namespace supportsdk
