#pragma once

#include <string>
#include <vector>

#include "supportsdk/chat/xmpp/Stanzas.h"

namespace supportsdk {

/// The query for the account's roster (RFC 6121, 2.1.3).
[[nodiscard]] StanzaPtr makeRosterQuery();

/// The addresses of the roster's items in `iq`; empty when it holds no roster.
[[nodiscard]] std::vector<std::string> rosterItems(const Stanza& iq);

}  // namespace supportsdk
