#include "bench/chat/Floods.h"

#include <array>
#include <cstdio>

#include "supportsdk/chat/QuorrandChatMessage.h"

namespace supportsdk::bench {

namespace {

constexpr std::size_t plainBytes = 260;

/// Every line has an id and one of three senders, as rooms send them.
std::string head(std::size_t number) {
    std::array<char, 128> text{};
    std::snprintf(text.data(), text.size(),
                  "<message from='%s/users:%zu' type='groupchat' id='l%08zu'><body>", roomJid,
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

/// `opening` filled up with words until the line has the wanted size.
std::string line(std::size_t number, const std::string& opening, const std::string& children = {}) {
    static const std::string words = "Could you try that once more, please, and tell me? ";
    const std::string foot = "</body>" + children + "</message>";
    std::string text = head(number) + opening;
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
    return flood("plain lines", count, [](std::size_t number) { return line(number, ""); });
}

Flood historyFlood(std::size_t count) {
    return flood("history lines", count,
                 [](std::size_t number) { return line(number, "", stamp(number)); });
}

Flood emoticonFlood(std::size_t count) {
    return flood("lines with emoticons", count,
                 [](std::size_t number) { return line(number, "(smile) Thanks (Wink) "); });
}

Flood avatarFlood(std::size_t count, const std::string& pictures) {
    const std::string body = R"({"message":"Could you try that once more, please?","secret":")" +
                             QuorrandChatMessage::MD5("plain") + R"(","context":{"from_avatar":")" +
                             pictures;
    return flood("envelopes with avatars", count, [body](std::size_t number) {
        return head(number) + body + std::to_string(number % 3) + "\"}}</body></message>";
    });
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
