#pragma once

#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "tests/support/FakePlatform.h"

namespace supportsdk::test {

/// A room's message stanza.
struct LineXml {
    std::string body;
    std::string from = "room@rooms.example.test/users:7;tablet";
    std::string id = {};
    std::string type = "groupchat";
    /// Further children, as XML.
    std::string children = {};

    [[nodiscard]] std::shared_ptr<const Stanza> stanza() const {
        pugi::xml_document document;
        auto message = document.append_child("message");
        message.append_attribute("type").set_value(type.c_str());
        if (!from.empty()) message.append_attribute("from").set_value(from.c_str());
        if (!id.empty()) message.append_attribute("id").set_value(id.c_str());
        message.append_child("body").text().set(body.c_str());
        message.append_buffer(children.data(), children.size());
        std::ostringstream xml;
        message.print(xml, "", pugi::format_raw);
        return Stanza::parse(xml.str());
    }
};

/// An engine on fakes.
struct ChatFixture {
    FakePlatform fakes;
    std::shared_ptr<QuorrandChat> chat = QuorrandChat::create(fakes.platform);

    [[nodiscard]] std::shared_ptr<QuorrandChatMessage> line(const LineXml& xml) const {
        return QuorrandChatMessage::createWithXMPPMessage(*chat, xml.stanza());
    }
    [[nodiscard]] std::shared_ptr<QuorrandChatMessage> envelope(const std::string& kind,
                                                                Json json) const {
        json["secret"] = QuorrandChatMessage::MD5(kind);
        return line({.body = json.dump()});
    }
};

}  // namespace supportsdk::test
