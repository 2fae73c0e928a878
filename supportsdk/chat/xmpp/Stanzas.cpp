#include "supportsdk/chat/xmpp/Stanzas.h"

#include <array>
#include <cstdio>
#include <random>

namespace supportsdk {

std::string generateUUID() {
    std::random_device random;
    std::array<unsigned, 8> parts{};
    for (auto& part : parts) part = random() & 0xFFFFU;
    parts[3] = (parts[3] & 0x0FFFU) | 0x4000U;  // version 4
    parts[4] = (parts[4] & 0x3FFFU) | 0x8000U;  // variant of RFC 9562
    std::array<char, 37> text{};
    std::snprintf(text.data(), text.size(), "%04X%04X-%04X-%04X-%04X-%04X%04X%04X", parts[0],
                  parts[1], parts[2], parts[3], parts[4], parts[5], parts[6], parts[7]);
    return text.data();
}

pugi::xml_node appendElement(pugi::xml_node parent, const char* name) {
    return parent.append_child(name);
}

pugi::xml_node appendElement(pugi::xml_node parent, const char* name, std::string_view text) {
    auto element = parent.append_child(name);
    element.append_child(pugi::node_pcdata).set_value(cleanText(text).c_str());
    return element;
}

void setAttribute(pugi::xml_node element, const char* name, std::string_view value) {
    auto attribute = element.attribute(name);
    if (!attribute) attribute = element.append_attribute(name);
    attribute.set_value(cleanText(value).c_str());
}

namespace {

pugi::xml_node appendElementIn(pugi::xml_node parent, const char* name, const char* xmlns) {
    auto element = appendElement(parent, name);
    setAttribute(element, "xmlns", xmlns);
    return element;
}

void setPresent(const Stanza& stanza, const char* name, const std::optional<std::string>& value) {
    if (value) setAttribute(stanza.root(), name, *value);
}

}  // namespace

StanzaPtr makePresence(const std::optional<std::string>& type,
                       const std::optional<std::string>& to) {
    auto presence = std::make_shared<Stanza>("presence");
    setPresent(*presence, "type", type);
    setPresent(*presence, "to", to);
    return presence;
}

StanzaPtr makeMessage(std::string_view body) {
    auto message = std::make_shared<Stanza>("message");
    appendElement(message->root(), "body", body);
    return message;
}

StanzaPtr makeIq(std::string_view type, std::string_view id, const std::optional<std::string>& to) {
    auto iq = std::make_shared<Stanza>("iq");
    setAttribute(iq->root(), "type", type);
    setAttribute(iq->root(), "id", id);
    setPresent(*iq, "to", to);
    return iq;
}

StanzaPtr makeResult(const Stanza& iq) {
    return makeIq("result", iq.attribute("id").value_or(""), iq.attribute("from"));
}

StanzaPtr makeError(const Stanza& iq, const char* condition) {
    auto answer = makeIq("error", iq.attribute("id").value_or(""), iq.attribute("from"));
    auto error = appendElement(answer->root(), "error");
    setAttribute(error, "type", "cancel");
    appendElementIn(error, condition, xmlns::stanzaErrors);
    return answer;
}

StanzaPtr makeHistory() {
    return Stanza::parse("<history maxstanzas='50'/>");
}

StanzaPtr makeRoomPresence(const std::string& to, const Stanza* history) {
    auto presence = makePresence({}, to);
    auto x = appendElementIn(presence->root(), "x", xmlns::muc);
    if (history) x.append_copy(history->root());
    return presence;
}

StanzaPtr makePersistentRoomForm(const Stanza& form) {
    auto filled = Stanza::parse(form.xml());
    if (!filled) return nullptr;
    for (auto field : filled->root().children("field")) {
        if (std::string_view(field.attribute("var").value()) != "muc#roomconfig_persistentroom")
            continue;
        field.remove_child(field.first_child());
        appendElement(field, "value", "1");
    }
    return filled;
}

std::string errorCondition(const Stanza& stanza) {
    for (const auto& node : stanza.child("error").children()) {
        if (node.type() == pugi::node_element && namespaceOf(node) == xmlns::stanzaErrors &&
            std::string_view(node.name()) != "text") {
            return node.name();
        }
    }
    return {};
}

}  // namespace supportsdk
