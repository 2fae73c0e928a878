#pragma once

#include <strophe.h>

#include <memory>
#include <vector>

#include "supportsdk/platform/Stanza.h"

namespace supportsdk {

/// Makes the kit's stanzas of libstrophe's. Keeps its buffers from one to the next. One thread at a
/// time.
class StanzaConverter {
 public:
    /// The same tree as a Stanza. A namespace is kept where it differs from the parent's, the
    /// stream's own ("jabber:client") at the root. Null when `stanza` is no element.
    [[nodiscard]] std::shared_ptr<const Stanza> convert(xmpp_stanza_t* stanza);

 private:
    /// An element whose children from `next` on are still to be copied.
    struct Open {
        xmpp_stanza_t* next;
        const char* xmlns;
    };

    void open(xmpp_stanza_t* element, const char* name, const char* inherited);

    StanzaBuilder builder_;
    // On the heap: how deep a stanza nests is the sender's choice.
    std::vector<Open> open_;
    std::vector<const char*> attributes_;
};

}  // namespace supportsdk
