#include <gmock/gmock.h>

#include "tests/chat/engine/EngineFixture.h"

namespace supportsdk::test {
namespace {

struct EngineRoom : Engine {
    void presence(const std::string& nickname, const std::string& attributes,
                  const std::string& inX, const std::string& room = "help@rooms.test") const {
        stream().receive("<presence from='" + room + "/" + nickname + "' " + attributes +
                         "><x xmlns='http://jabber.org/protocol/muc#user'>" + inX +
                         "</x></presence>");
    }
};

TEST_F(EngineRoom, isJoinedByItsOwnPresenceAndFollowedThroughNamesAndErrors) {
    chat->muc = "Help@rooms.test";
    chat->connect();
    stream().authenticate();
    presence("you", "", "");
    presence("members_users:1", "", "<status code='110'/>", "other@rooms.test");
    EXPECT_FALSE(chat->isRoomJoined());
    presence("me-2", "", "<status code='110'/><status code='210'/>");
    presence("me-2", "", "<status code='110'/>");
    presence("you", "type='unavailable'", "<status code='307'/>");
    presence("me-2", "type='unavailable'", "<item nick='I'/><status code='303'/>");
    stream().receive("<presence from='help@rooms.test' type='error'/>");
    EXPECT_TRUE(chat->isRoomJoined());
    EXPECT_EQ(delegate->take(), (Heard{"connected", "joined"}));
    chat->leaveRoom();
    EXPECT_EQ(stream().sent.back(), "<presence type=\"unavailable\" to=\"Help@rooms.test/I\"/>");
}

TEST_F(EngineRoom, deliversGroupchatOfItselfOnlyUntilItIsLeft) {
    chat->ignoreParticipantStatus = true;
    join();
    chat->sendGroupchatMessage("mine", true);
    const auto id = *Stanza::parse(stream().sent.back())->attribute("id");
    const auto line = [&](const std::string& attributes, const std::string& body) {
        stream().receive("<message " + attributes + "><body>" + body + "</body></message>");
    };
    line("from='HELP@rooms.test/you' type='groupchat'", "a");
    line("from='help@rooms.test/you' type='chat'", "private");
    line("from='help@rooms.test/you'", "untyped");
    line("from='evil@rooms.test/you' type='groupchat'", "b");
    line("type='groupchat'", "c");
    // An error of an occupant is no word of the room.
    line("from='help@rooms.test/you' type='error' id='" + id + "'", "");
    EXPECT_EQ(delegate->take(), Heard{"line you: a"});
    line("from='help@rooms.test' type='error' id='" + id + "'", "");
    EXPECT_EQ(delegate->take(), Heard{"not sent: mine"});
    chat->leaveRoom();
    line("from='help@rooms.test/you' type='groupchat'", "late");
    EXPECT_EQ(delegate->take(), Heard{});
}

TEST_F(EngineRoom, endsOnce) {
    join();
    presence("members_users:1", "type='unavailable'", "<destroy><reason>done</reason></destroy>");
    presence("members_users:1", "type='unavailable'", "");
    EXPECT_EQ(delegate->take(), Heard{"left"});
}

TEST_F(EngineRoom, isMadePersistentByTheFormThatItSends) {
    join();
    stream().receive(
        "<iq from='help@rooms.test' type='result'><query xmlns='http://jabber.org/protocol/"
        "muc#owner'><x xmlns='jabber:x:data' type='form'><field "
        "var='muc#roomconfig_persistentroom'/></x></query></iq>");
    EXPECT_THAT(stream().sent.back(),
                testing::AllOf(testing::HasSubstr("type=\"set\""),
                               testing::HasSubstr("to=\"help@rooms.test\""),
                               testing::HasSubstr("<x xmlns=\"jabber:x:data\" type=\"submit\">"),
                               testing::HasSubstr("<value>1</value>")));
}

}  // namespace
}  // namespace supportsdk::test
