#include "bench/chat/Floods.h"

#include <array>
#include <cstdio>

namespace supportsdk::bench {

namespace {

constexpr std::size_t plainBytes = 260;
constexpr const char* pictured = "users:";

/// Every line has an id and one of three senders, as rooms send them.
std::string head(std::size_t number, const char* kind) {
    std::array<char, 128> text{};
    std::snprintf(text.data(), text.size(),
                  "<message from='%s/%s%zu' type='groupchat' id='l%08zu'><body>", roomJid, kind,
                  number % 3, number);
    return text.data();
}

std::string stamp(std::size_t number) {
    std::array<char, 128> text{};
    const auto minute = number / 5;
    std::snprintf(text.data(), text.size(),
                  "<delay xmlns='urn:xmpp:delay' stamp='2026-%02zu-%02zuT%02zu:%02zu:%02zuZ'/>",
                  minute / 40320 % 12 + 1, minute / 1440 % 28 + 1, minute / 60 % 24, minute % 60,
                  number % 5 * 10);
    return text.data();
}

struct Variant {
    const char* kind = "agent-";
    std::string opening = {};
    std::string children = {};
};

/// Filled up with words until it has the wanted size.
std::string line(std::size_t number, const Variant& variant) {
    static const std::string words = "Could you try that once more, please, and tell me? ";
    const std::string foot = "</body>" + variant.children + "</message>";
    std::string text = head(number, variant.kind) + variant.opening;
    for (std::size_t at = 0; text.size() + foot.size() < plainBytes; ++at)
        text += words[at % words.size()];
    return text + foot;
}

template <typename Make>
Flood flood(const char* name, std::size_t count, Make make) {
    Flood flood{name, count, make(std::size_t{0}).size(), {}};
    flood.xml.reserve(count * (flood.bytes + 8));
    for (std::size_t number = 0; number < count; ++number) flood.xml += make(number);
    return flood;
}

}  // namespace

Flood plainFlood(std::size_t count) {
    return flood("plain lines", count, [](std::size_t number) { return line(number, {}); });
}

Flood historyFlood(std::size_t count) {
    return flood("history lines", count,
                 [](std::size_t number) { return line(number, {.children = stamp(number)}); });
}

Flood emoticonFlood(std::size_t count) {
    return flood("lines with emoticons", count, [](std::size_t number) {
        return line(number, {.opening = "(smile) Thanks (Wink) "});
    });
}

Flood avatarFlood(std::size_t count) {
    return flood("lines with avatars", count,
                 [](std::size_t number) { return line(number, {.kind = pictured}); });
}

std::vector<std::shared_ptr<const Stanza>> plainStanzas(std::size_t first, std::size_t count) {
    StanzaBuilder builder;
    std::vector<std::shared_ptr<const Stanza>> stanzas;
    for (auto number = first; number < first + count; ++number) {
        const auto parsed = Stanza::parse(line(number, {}));
        builder.open(parsed->name());
        for (const auto& attribute : parsed->root().attributes())
            builder.attribute(attribute.name(), attribute.value());
        builder.open("body");
        builder.text(parsed->root().child_value("body"));
        builder.close();
        builder.close();
        stanzas.push_back(builder.finish());
    }
    return stanzas;
}

std::vector<test::RawServer::Line> scriptOf(const Flood& flood) {
    auto script = test::RawServer::loginScript();
    const std::string room = roomJid;
    script.push_back(
        {"http://jabber.org/protocol/muc",
         "<presence from='" + room + "/" + occupant +
             "'><x xmlns='http://jabber.org/protocol/muc#user'><item role='participant' "
             "affiliation='none'/><status code='110'/></x></presence><message from='" +
             room + "' type='groupchat'><subject/></message>"});
    script.push_back({"go</body>", flood.xml});
    return script;
}

}  // namespace supportsdk::bench
