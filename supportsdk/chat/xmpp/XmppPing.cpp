#include "supportsdk/chat/xmpp/XmppPing.h"

#include "supportsdk/chat/xmpp/Stanzas.h"

namespace supportsdk {

bool XmppPing::receive(const Stanza& stanza) {
    const bool isPing = stanza.name() == "iq" && stanza.attribute("type") == "get" &&
                        stanza.child("ping", xmlns::ping);
    if (!responds_ || !isPing) return false;
    send_(makeResult(stanza)->xml());
    return true;
}

}  // namespace supportsdk
