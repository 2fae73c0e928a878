#include "service/chat/Stanzas.h"

#include <pugixml.hpp>
#include <sstream>

#include "service/state/Identifiers.h"

namespace supportsdk::service {

namespace {

constexpr char chatStates[] = "http://jabber.org/protocol/chatstates";

std::string asText(const pugi::xml_document& document) {
    std::ostringstream text;
    document.save(text, "", pugi::format_raw | pugi::format_no_declaration);
    return text.str();
}

}  // namespace

std::optional<RoomMessage> readRoomMessage(const std::string& xml) {
    pugi::xml_document document;
    if (!document.load_buffer(xml.data(), xml.size(), pugi::parse_default | pugi::parse_ws_pcdata))
        return std::nullopt;
    const pugi::xml_node element = document.document_element();
    RoomMessage message;
    message.id = element.attribute("id").value();
    if (const auto body = element.child("body")) message.body = body.text().get();
    for (const auto& child : element.children()) {
        if (std::string(child.attribute("xmlns").value()) == chatStates)
            message.chatState = child.name();
    }
    return message;
}

std::string writeRoomMessage(const RoomMessage& message) {
    pugi::xml_document document;
    auto element = document.append_child("message");
    element.append_attribute("type") = "groupchat";
    element.append_attribute("id") = (message.id.empty() ? randomHex(8) : message.id).c_str();
    if (message.body) element.append_child("body").text().set(message.body->c_str());
    if (!message.chatState.empty()) {
        element.append_child(message.chatState.c_str()).append_attribute("xmlns") = chatStates;
    }
    return asText(document);
}

std::string writePresence(bool available) {
    pugi::xml_document document;
    auto element = document.append_child("presence");
    if (!available) element.append_attribute("type") = "unavailable";
    auto extension = element.append_child("x");
    extension.append_attribute("xmlns") = "http://jabber.org/protocol/muc#user";
    auto item = extension.append_child("item");
    item.append_attribute("affiliation") = available ? "member" : "none";
    item.append_attribute("role") = available ? "participant" : "none";
    return asText(document);
}

}  // namespace supportsdk::service
