#include "backends/strophe/StanzaConversion.h"

#include <algorithm>
#include <string_view>

namespace supportsdk {

void StanzaConverter::open(xmpp_stanza_t* element, const char* name, const char* inherited) {
    builder_.open(name);
    const char* xmlns = inherited;
    const int size = std::max(xmpp_stanza_get_attribute_count(element), 0) * 2;
    attributes_.resize(static_cast<std::size_t>(size));
    const int filled = xmpp_stanza_get_attributes(element, attributes_.data(), size);
    for (int i = 0; i + 1 < filled; i += 2) {
        const std::string_view key = attributes_[static_cast<std::size_t>(i)];
        const char* value = attributes_[static_cast<std::size_t>(i) + 1];
        if (key == "xmlns") {
            xmlns = value;
            if (std::string_view(value) == inherited) continue;
        }
        // The parser drops the prefix of xml:lang.
        builder_.attribute(key == "lang" ? "xml:lang" : key, value);
    }
    open_.push_back({xmpp_stanza_get_children(element), xmlns});
}

std::shared_ptr<const Stanza> StanzaConverter::convert(xmpp_stanza_t* stanza) {
    const char* root = xmpp_stanza_get_name(stanza);
    if (!root) return nullptr;
    open(stanza, root, XMPP_NS_CLIENT);
    while (!open_.empty()) {
        auto* child = open_.back().next;
        if (!child) {
            builder_.close();
            open_.pop_back();
            continue;
        }
        open_.back().next = xmpp_stanza_get_next(child);
        if (xmpp_stanza_is_text(child)) {
            const char* text = xmpp_stanza_get_text_ptr(child);
            builder_.text(text ? text : "");
        } else if (const char* name = xmpp_stanza_get_name(child)) {
            open(child, name, open_.back().xmlns);
        }
    }
    return builder_.finish();
}

}  // namespace supportsdk
