#pragma once

#include "supportsdk/launcher/SupportMenuView.h"
#include "supportsdk/platform/Screens.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk::host {

/// What a person sees of the menu: heading, entries with their icons, and the theme's look of it.
[[nodiscard]] Json describeMenu(const SupportMenuView& menu);

[[nodiscard]] Json describeSheet(const ActionSheet& sheet);

}  // namespace supportsdk::host
