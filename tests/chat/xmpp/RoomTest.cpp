#include <gmock/gmock.h>

#include "supportsdk/chat/xmpp/Stanzas.h"
#include "supportsdk/chat/xmpp/XmppRoom.h"
#include "tests/support/FakePlatform.h"

namespace supportsdk::test {
namespace {

constexpr const char* mucUserOpen = "<x xmlns='http://jabber.org/protocol/muc#user'>";

struct Room : testing::Test {
    Room() {
        room = std::make_shared<XmppRoom>(
            "Help@rooms.test", [this](const std::string& xml) { sent.push_back(xml); }, log,
            XmppRoom::Callbacks{
                [this] { events.emplace_back("joined"); },
                [this](const Stanza& presence) {
                    events.push_back("kept out: " + errorCondition(presence));
                },
                [this](bool requested) {
                    events.emplace_back(requested ? "left" : "thrown out");
                    room.reset();  // as one who is done with it
                },
                [this](const auto& message) {
                    events.push_back("message " + message->childText("body").value_or("-"));
                },
                [this](const Stanza& error) {
                    events.push_back("refused " + error.attribute("id").value_or("-"));
                },
                [this](const Stanza& form) { events.push_back(form.xml()); }});
    }

    bool receive(const std::string& xml) {
        const auto held = room;
        return held->receive(Stanza::parse(xml));
    }
    bool presence(const std::string& nickname, const std::string& attributes,
                  const std::string& inX) {
        return receive("<presence from='help@rooms.test/" + nickname + "' " + attributes + ">" +
                       mucUserOpen + inX + "</x></presence>");
    }
    void join() {
        room->joinRoomUsingNickname("me", makeHistory());
        presence("me", "", "<status code='110'/>");
    }

    std::shared_ptr<FakeLog> log = std::make_shared<FakeLog>();
    std::vector<std::string> sent;
    std::vector<std::string> events;
    std::shared_ptr<XmppRoom> room;
};

TEST_F(Room, isJoinedByItsOwnPresenceAndNoOther) {
    room->joinRoomUsingNickname("me", makeHistory());
    EXPECT_EQ(sent.at(0),
              "<presence to=\"Help@rooms.test/me\"><x xmlns=\"http://jabber.org/protocol/muc\">"
              "<history maxstanzas=\"50\"/></x></presence>");
    EXPECT_TRUE(presence("you", "", ""));
    EXPECT_FALSE(
        receive("<presence from='other@rooms.test/me'><x xmlns='http://jabber.org/"
                "protocol/muc#user'><status code='110'/></x></presence>"));
    EXPECT_FALSE(room->isJoined());
    presence("me-2", "", "<status code='110'/><status code='210'/>");
    EXPECT_TRUE(room->isJoined());
    presence("me-2", "", "<status code='110'/>");
    EXPECT_EQ(events, std::vector<std::string>{"joined"}) << "a change of presence is no new join";
    room->leaveRoom();
    EXPECT_EQ(sent.at(1), "<presence type=\"unavailable\" to=\"Help@rooms.test/me-2\"/>");
}

TEST_F(Room, reportsItsEndOnceAndForOneselfOnly) {
    join();
    presence("you", "type='unavailable'", "<status code='307'/>");
    EXPECT_TRUE(room->isJoined());
    const auto held = room;
    presence("me", "type='unavailable'", "<destroy><reason>done</reason></destroy>");
    EXPECT_FALSE(held->isJoined());
    held->receive(Stanza::parse("<presence from='help@rooms.test/me' type='unavailable'/>"));
    EXPECT_EQ(events, (std::vector<std::string>{"joined", "thrown out"}));
}

TEST_F(Room, staysJoinedThroughARenamingAndAnError) {
    join();
    presence("me", "type='unavailable'",
             "<item nick='I'/><status code='303'/><status code='110'/>");
    receive("<presence from='help@rooms.test' type='error'/>");
    EXPECT_TRUE(room->isJoined());
    room->leaveRoom();
    EXPECT_FALSE(room->isJoined());
    EXPECT_THAT(sent.back(), testing::HasSubstr("Help@rooms.test/I"));
}

TEST_F(Room, deliversGroupchatOfItselfOnly) {
    join();
    EXPECT_TRUE(
        receive("<message from='HELP@rooms.test/you' type='groupchat'><body>a</body>"
                "</message>"));
    receive("<message from='help@rooms.test/you' type='chat'><body>private</body></message>");
    receive("<message from='help@rooms.test/you'><body>untyped</body></message>");
    EXPECT_FALSE(
        receive("<message from='evil@rooms.test/you' type='groupchat'><body>b</body>"
                "</message>"));
    EXPECT_FALSE(receive("<message type='groupchat'><body>c</body></message>"));
    receive("<message from='help@rooms.test' id='1' type='error'/>");
    receive("<message from='help@rooms.test/you' id='2' type='error'/>");
    room->leaveRoom();
    receive("<message from='help@rooms.test/you' type='groupchat'><body>late</body></message>");
    EXPECT_EQ(events, (std::vector<std::string>{"joined", "message a", "refused 1"}))
        << "an error of an occupant is no word of the room";
    presence("me", "type='unavailable'", "");
    EXPECT_EQ(events.back(), "left");
}

TEST_F(Room, handsItsConfigurationOutAndBack) {
    receive(
        "<iq from='help@rooms.test' type='result'><query xmlns='http://jabber.org/protocol/"
        "muc#owner'><x xmlns='jabber:x:data' type='form'><field var='a'/></x></query></iq>");
    ASSERT_EQ(events, std::vector<std::string>{"<x xmlns=\"jabber:x:data\" type=\"form\"><field "
                                               "var=\"a\"/></x>"});
    room->configureRoomUsingOptions(*Stanza::parse(events[0]));
    EXPECT_THAT(sent.at(0),
                testing::AllOf(testing::HasSubstr("type=\"set\""),
                               testing::HasSubstr("to=\"Help@rooms.test\""),
                               testing::HasSubstr("<x xmlns=\"jabber:x:data\" type=\"submit\">")));
}

}  // namespace
}  // namespace supportsdk::test
