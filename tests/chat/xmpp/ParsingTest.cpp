#include <gmock/gmock.h>

#include "supportsdk/chat/xmpp/ChatState.h"
#include "supportsdk/chat/xmpp/DelayedDelivery.h"
#include "supportsdk/chat/xmpp/Stanzas.h"

namespace supportsdk::test {
namespace {

using namespace std::chrono_literals;

constexpr Clock::Time noon{std::chrono::seconds{1769860830}};  // 2026-01-31 12:00:30 UTC

TEST(DelayedDelivery, readsTheStampsOfBothKindsAndNothingElse) {
    EXPECT_EQ(parseXmppDateTime("2026-01-31T12:00:30Z"), noon);
    EXPECT_EQ(parseXmppDateTime("2026-01-31T07:00:30-05:00"), noon);
    EXPECT_EQ(parseXmppDateTime("20260131T12:00:30"), noon);
    EXPECT_EQ(parseXmppDateTime("2026-01-31T12:00:30.1234567890123456789012345Z"), noon + 123456us);
    for (const auto* text :
         {"", "2026-02-30T12:00:30Z", "2026-01-31T24:00:00Z", "2026-01-31T12:60:30Z",
          "2026-01-31 12:00:30Z", "2026-01-31T12:00:30", "2026-01-31T12:00:30Zzz",
          "2026-01-31T12:00:30.Z", "2026-01-31T12:00:30+99:00", "2026-0-31T12:00:30Z",
          "-026-01-31T12:00:30Z"}) {
        EXPECT_FALSE(parseXmppDateTime(text)) << text;
    }
}

TEST(DelayedDelivery, prefersTheModernStampAndLooksAtTheNamespace) {
    const auto dateOf = [](const std::string& children) {
        return delayedDeliveryDate(*Stanza::parse("<message>" + children + "</message>"));
    };
    const std::string legacy = "<x xmlns='jabber:x:delay' stamp='20260131T12:00:30'/>";
    EXPECT_EQ(dateOf(legacy), noon);
    EXPECT_EQ(dateOf(legacy + "<delay xmlns='urn:xmpp:delay' stamp='2026-01-31T12:00:31Z'/>"),
              noon + 1s);
    EXPECT_EQ(dateOf(legacy + "<delay xmlns='urn:xmpp:delay'/>"), noon);
    EXPECT_FALSE(dateOf("<delay xmlns='urn:other' stamp='2026-01-31T12:00:31Z'/>"));
}

TEST(ChatState, isReadFromItsNamespaceOnly) {
    const auto states =
        chatStates(*Stanza::parse("<message><body>x</body><active xmlns='urn:other'/><paused "
                                  "xmlns='http://jabber.org/protocol/chatstates'/></message>"));
    EXPECT_TRUE(states.has(ChatState::paused));
    EXPECT_FALSE(states.has(ChatState::active));
}

TEST(CleanText, keepsWhatXmlMayHold) {
    const std::string good = "tab\t line\n Grüße \xF0\x9F\x98\x80 <&>";
    EXPECT_EQ(cleanText(good), good);
    EXPECT_EQ(cleanText(std::string("a\0b\x01\x1F"
                                    "c",
                                    6)),
              "abc");
    const std::string bad = "\xEF\xBF\xBD";
    EXPECT_EQ(cleanText("\xED\xA0\x80"), bad + bad + bad) << "a lone surrogate";
    EXPECT_EQ(cleanText("\xC0\xAF"), bad + bad) << "an overlong form";
    EXPECT_EQ(cleanText("\xEF\xBF\xBF"), bad) << "a noncharacter";
    EXPECT_EQ(cleanText("a\xF0\x9F\x98"), "a" + bad + bad + bad) << "cut in the middle";
    EXPECT_EQ(cleanText("\xF4\x90\x80\x80"), bad + bad + bad + bad) << "beyond the last character";
}

TEST(Stanzas, surviveHostileTextUnchangedInShape) {
    const std::string hostile = "</body><x a='\"'>&amp;]]>";
    const auto message = makeMessage(hostile);
    setAttribute(message->root(), "to", "\"/><a b='");
    const auto read = Stanza::parse(message->xml());
    ASSERT_TRUE(read);
    EXPECT_EQ(read->childText("body"), hostile);
    EXPECT_EQ(read->attribute("to"), "\"/><a b='");
}

TEST(Stanzas, changeOnlyThePersistentFieldOfTheForm) {
    const auto form = Stanza::parse(
        "<x xmlns='jabber:x:data' type='form'><field var='muc#roomconfig_roomname'><value>A</value>"
        "</field><field var='muc#roomconfig_persistentroom' type='boolean'><value>0</value></field>"
        "<field var='muc#roomconfig_persistentroom'/><field/></x>");
    EXPECT_EQ(makePersistentRoomForm(*form)->xml(),
              "<x xmlns=\"jabber:x:data\" type=\"form\"><field var=\"muc#roomconfig_roomname\">"
              "<value>A</value></field><field var=\"muc#roomconfig_persistentroom\" "
              "type=\"boolean\"><value>1</value></field><field "
              "var=\"muc#roomconfig_persistentroom\"><value>1</value></field><field/></x>");
}

}  // namespace
}  // namespace supportsdk::test
