#pragma once

#include <optional>
#include <string_view>

#include "supportsdk/platform/Clock.h"
#include "supportsdk/platform/Stanza.h"

namespace supportsdk {

/// When a message that comes late was sent: its `delay` stamp (XEP-0203), else the legacy
/// `jabber:x:delay` one (XEP-0091). Nothing when it has neither, or only stamps that name no
/// moment. Any thread.
[[nodiscard]] std::optional<Clock::Time> delayedDeliveryDate(const Stanza& message);

/// A moment as XEP-0082 writes it ("2026-01-31T12:00:30.5Z", "...+01:00") or as XEP-0091 does
/// ("20260131T12:00:30", always UTC); nothing for years outside 1678 to 2261.
[[nodiscard]] std::optional<Clock::Time> parseXmppDateTime(std::string_view text);

}  // namespace supportsdk
