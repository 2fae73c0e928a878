#pragma once

#include <strophe.h>

#include <memory>

#include "supportsdk/platform/Stanza.h"

namespace supportsdk {

/// The same tree as a Stanza. A namespace is kept where it differs from the parent's, the stream's
/// own ("jabber:client") at the root. Null when `stanza` is no element.
std::shared_ptr<const Stanza> convertStanza(xmpp_stanza_t* stanza);

}  // namespace supportsdk
