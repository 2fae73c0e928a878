#include "backends/strophe/StanzaConversion.h"

#include <cstring>
#include <vector>

namespace supportsdk {

namespace {

// One element whose content is still to be copied. Kept on the heap: how deep a stanza nests is the
// sender's choice.
struct Pending {
    xmpp_stanza_t* from;
    pugi::xml_node to;
    const char* xmlns;
};

const char* namespaceOf(xmpp_stanza_t* stanza, const char* inherited) {
    const char* own = xmpp_stanza_get_ns(stanza);
    return own ? own : inherited;
}

void copyAttributes(xmpp_stanza_t* from, pugi::xml_node to, const char* inherited) {
    const int count = xmpp_stanza_get_attribute_count(from);
    if (count <= 0) return;
    std::vector<const char*> pairs(static_cast<std::size_t>(count) * 2);
    const int filled = xmpp_stanza_get_attributes(from, pairs.data(), count * 2);
    for (int i = 0; i + 1 < filled; i += 2) {
        const char* name = pairs[static_cast<std::size_t>(i)];
        const char* value = pairs[static_cast<std::size_t>(i) + 1];
        if (std::strcmp(name, "xmlns") == 0 && std::strcmp(value, inherited) == 0) continue;
        // The parser drops the prefix of xml:lang.
        to.append_attribute(std::strcmp(name, "lang") == 0 ? "xml:lang" : name).set_value(value);
    }
}

void copyChildren(Pending parent, std::vector<Pending>& pending) {
    for (auto* child = xmpp_stanza_get_children(parent.from); child;
         child = xmpp_stanza_get_next(child)) {
        if (xmpp_stanza_is_text(child)) {
            const char* text = xmpp_stanza_get_text_ptr(child);
            parent.to.append_child(pugi::node_pcdata).set_value(text ? text : "");
        } else if (const char* name = xmpp_stanza_get_name(child)) {
            auto node = parent.to.append_child(name);
            copyAttributes(child, node, parent.xmlns);
            pending.push_back({child, node, namespaceOf(child, parent.xmlns)});
        }
    }
}

}  // namespace

std::shared_ptr<const Stanza> convertStanza(xmpp_stanza_t* stanza) {
    const char* name = xmpp_stanza_get_name(stanza);
    if (!name) return nullptr;
    auto result = std::make_shared<Stanza>(name);
    copyAttributes(stanza, result->root(), XMPP_NS_CLIENT);
    std::vector<Pending> pending{{stanza, result->root(), namespaceOf(stanza, XMPP_NS_CLIENT)}};
    while (!pending.empty()) {
        const Pending next = pending.back();
        pending.pop_back();
        copyChildren(next, pending);
    }
    return result;
}

}  // namespace supportsdk
