#include "supportsdk/chat/xmpp/Roster.h"

namespace supportsdk {

StanzaPtr makeRosterQuery() {
    auto iq = makeIq("get", "ANY_ID_NAME");
    setAttribute(iq->root(), "from", "ANY_ID_NAME@localhost");
    setAttribute(appendElement(iq->root(), "query"), "xmlns", xmlns::roster);
    return iq;
}

std::vector<std::string> rosterItems(const Stanza& iq) {
    std::vector<std::string> jids;
    for (const auto& item : iq.child("query", xmlns::roster).children("item")) {
        if (const auto jid = item.attribute("jid")) jids.emplace_back(jid.value());
    }
    return jids;
}

}  // namespace supportsdk
