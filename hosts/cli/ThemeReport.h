#pragma once

#include "supportsdk/platform/Values.h"
#include "supportsdk/theme/Appearance.h"

namespace supportsdk::host {

/// What the theme answers now: every colour, text, size and icon under its accessor's name. A
/// colour or text that it has nothing for is left out.
[[nodiscard]] Json describeTheme(const Appearance& theme);

}  // namespace supportsdk::host
