#pragma once

#include <string>

#include "supportsdk/core/Support.h"
#include "supportsdk/knowledge/KBEntryModel.h"
#include "supportsdk/platform/Screens.h"

// The two ways to show an article. Which one comes first is for the screen to say. Main thread.

namespace supportsdk {

/// Shows the entry's address in a browser over `over`, or tells the person that it cannot: see
/// isWebAddress().
void presentArticle(const Support& support, const KBEntryModel& entry, ScreenController& over);

/// Shows the entry's text on top of `from`; an empty page when it has none.
void pushArticle(const Support& support, const KBEntryModel& entry, ScreenController& from);

/// Tells the person that there is no article to show. `message` says why, and may be empty.
void alertArticleIsMissing(const Platform& platform, const std::string& message);

}  // namespace supportsdk
