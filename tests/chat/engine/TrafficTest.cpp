#include <gmock/gmock.h>

#include "tests/chat/engine/EngineFixture.h"

namespace supportsdk::test {
namespace {

constexpr const char* delayed = "<delay xmlns='urn:xmpp:delay' stamp='2026-01-31T11:00:00Z'/>";

TEST_F(Engine, echoesASentLineAndListsItWhenTheRoomReflectsIt) {
    chat->setParticipantsEligible(Json{{"members_users:1", {{"name", "Ann"}}}});
    join();
    EXPECT_TRUE(chat->firstUse);
    EXPECT_EQ(chat->sendGroupchatMessage("hel\x01"
                                         "lo ",
                                         false),
              ChatSend::sent);
    EXPECT_FALSE(chat->firstUse);
    const auto sent = stream().sent.back();
    EXPECT_THAT(sent, testing::MatchesRegex("<message id=\"[0-9A-F-]{36}\" to=\"help@rooms.test\" "
                                            "type=\"groupchat\"><body>hello </body></message>"));
    ASSERT_EQ(delegate->lines.size(), 1U);
    EXPECT_EQ(delegate->lines[0]->message(), "hello");
    EXPECT_EQ(delegate->lines[0]->text, "hello ");
    EXPECT_EQ(delegate->lines[0]->from, "members_users:1");
    EXPECT_EQ(delegate->lines[0]->fromName, "Ann");
    EXPECT_TRUE(chat->viewModel->messages().empty());
    reflect();
    reflect();
    ASSERT_EQ(chat->viewModel->messages().size(), 1U);
    EXPECT_TRUE(chat->viewModel->lastMessage()->isMe);

    const auto lines = delegate->lines.size();
    chat->sendGroupchatMessage("quiet", true);
    chat->sendGroupchatMessage(QuorrandChatMessage::createJSONMessage("a", "b", "c"), false);
    EXPECT_EQ(delegate->lines.size(), lines) << "neither on demand nor what is no line";
}

TEST_F(Engine, sendsNothingEmptyTooLongOrWithoutARoom) {
    EXPECT_NE(chat->sendGroupchatMessage("early", false), ChatSend::sent);
    join();
    EXPECT_NE(chat->sendGroupchatMessage("", false), ChatSend::sent);
    EXPECT_NE(chat->sendGroupchatMessage("\x01\x02", false), ChatSend::sent);
    // Each becomes five bytes on the wire.
    EXPECT_NE(chat->sendGroupchatMessage(std::string(50'000, '&'), false), ChatSend::sent);
    EXPECT_EQ(stream().sent.size(), 2U);
    EXPECT_EQ(chat->sendGroupchatMessage(std::string(240'000, 'x'), true), ChatSend::sent);
    EXPECT_LT(stream().sent.back().size(), maximumStanzaBytes + 1);
}

TEST_F(Engine, countsUnreadLinesWithTheirHistory) {
    join();
    std::vector<std::int64_t> posted;
    const auto observation = NotificationCenter::shared().addObserver(
        std::string(unreadCountUpdatedNotification), [&](const Notification& notification) {
            posted.push_back(notification.object.number().value_or(-1));
        });
    say("you", "not counted");
    chat->postUnreadMessageCount = true;
    say("you", "old", delayed);
    say("you", "new");
    EXPECT_EQ(posted, (std::vector<std::int64_t>{1, 2}));
    EXPECT_EQ(delegate->counts, (std::vector<std::uint64_t>{0, 1, 2}));
    stream().end(XmppLoss::lost);
    stream().authenticate();
    enter();
    EXPECT_EQ(chat->unreadMessageCount, 0U);
    EXPECT_EQ(posted.back(), 0);
    EXPECT_TRUE(chat->viewModel->messages().empty());
}

TEST_F(Engine, asksForParticipantsOnlyOverLiveLinesOfStrangers) {
    chat->setParticipantsEligible(Json{{"known", Json::object()}});
    join();
    say("stranger", "old", delayed);
    say("known;desk", "hi");
    say("chimebot;1", "beep");
    EXPECT_FALSE(delegate->has("refresh"));
    say("stranger", "hi");
    EXPECT_EQ(delegate->count("refresh"), 1);
    chat->ignoreParticipantStatus = true;
    say("stranger", "again");
    EXPECT_EQ(delegate->count("refresh"), 1);
}

TEST_F(Engine, dropsHostileStanzasWithoutAWord) {
    chat->showNotifications = true;
    join();
    for (const auto* xml :
         {"<message/>", "<presence/>", "<iq/>", "<other/>", "<message from=''/>",
          "<message from='help@rooms.test' type='groupchat'><subject/></message>",
          "<message from='help@rooms.test/you' type='error'/>",
          "<message from='help@rooms.test/you' type='groupchat'><body>[1]</body></message>",
          "<message from='help@rooms.test/you' "
          "type='groupchat'><body>{\"secret\":1}</body></message>",
          "<message from='you@example.test' type='groupchat'><body>spoofed</body></message>",
          "<message from='you@example.test' type='chat'><body>one to one</body></message>",
          "<presence from='help@rooms.test/' type='unavailable'><x/></presence>",
          "<iq type='result' from='help@rooms.test'><query xmlns='jabber:iq:roster'><item/></query>"
          "</iq>",
          "<iq type='get'><ping xmlns='urn:other'/></iq>"}) {
        stream().receive(xml);
    }
    EXPECT_TRUE(delegate->heard.empty());
    EXPECT_TRUE(chat->isRoomJoined());
    say("you", "still here");
    ASSERT_EQ(delegate->lines.size(), 1U);
    EXPECT_TRUE(delegate->lines[0]->showNotifications);
}

TEST_F(Engine, knowsItsParticipants) {
    EXPECT_TRUE(chat->isParticipant("chimebot;any"));
    EXPECT_FALSE(chat->isParticipant("a"));
    EXPECT_EQ(chat->createMentionSuggestions(), std::vector<std::string>{"@all"});
    EXPECT_EQ(chat->getInfoType("name", "a"), "");
    chat->setParticipantsEligible(
        Json{{"a", {{"name", "Ann"}, {"alias", "zoe"}, {"none", nullptr}, {"number", 1}}},
             {"b", {{"alias", "Bob"}}},
             {"c", {{"alias", "anna"}}},
             {"bad", nullptr}});
    EXPECT_EQ(chat->getInfoType("name", "a;desk"), "Ann");
    EXPECT_EQ(chat->getInfoType("none", "a"), "");
    EXPECT_EQ(chat->getInfoType("missing", "a"), std::nullopt);
    EXPECT_EQ(chat->getInfoType("number", "a"), std::nullopt);
    EXPECT_EQ(chat->getInfoType("name", "bad"), "");
    EXPECT_EQ(chat->getInfoType("name", std::nullopt), "");
    EXPECT_TRUE(chat->isParticipant("bad"));
    EXPECT_FALSE(chat->isParticipant(std::nullopt));
    EXPECT_EQ(chat->createMentionSuggestions(),
              (std::vector<std::string>{"@all", "anna", "Bob", "zoe"}));
    chat->setParticipantsEligible(Json::array({1}));
    EXPECT_FALSE(chat->isParticipant("a"));
    EXPECT_EQ(chat->createMentionSuggestions(), std::vector<std::string>{"@all"});
}

}  // namespace
}  // namespace supportsdk::test
