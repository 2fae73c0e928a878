#include <gmock/gmock.h>

#include "tests/chat/engine/EngineFixture.h"

namespace supportsdk::test {
namespace {

using namespace std::chrono_literals;

TEST_F(Engine, writesItsStanzasWordForWord) {
    ASSERT_TRUE(chat->connect());
    EXPECT_EQ(stream().options.jid, "user@example.test/kit");
    EXPECT_EQ(stream().options.port, 0);
    stream().authenticate();
    enter();
    chat->requestRoomHistory();
    chat->sendMessage("hello", "friend@example.test");
    chat->fetchFriends();
    chat->disconnect();
    const std::string history =
        "<x xmlns=\"http://jabber.org/protocol/muc\"><history maxstanzas=\"50\"/></x></presence>";
    EXPECT_EQ(stream().sent,
              (std::vector<std::string>{
                  "<presence/>", "<presence to=\"help@rooms.test/members_users:1\">" + history,
                  "<presence to=\"help@rooms.test\">" + history,
                  "<message type=\"chat\" to=\"friend@example.test\"><body>hello</body></message>",
                  "<iq type=\"get\" id=\"ANY_ID_NAME\" from=\"ANY_ID_NAME@localhost\"><query "
                  "xmlns=\"jabber:iq:roster\"/></iq>",
                  "<presence type=\"unavailable\" to=\"help@rooms.test/members_users:1\"/>",
                  "<presence type=\"unavailable\"/>"}));
    EXPECT_EQ(delegate->heard, (Heard{"connected", "joined", "disconnected"}));
    stream().end(XmppLoss::requested);
    EXPECT_EQ(delegate->take().back(), "disconnected");
    advance(1h);
    EXPECT_EQ(streams(), 1U);
    EXPECT_TRUE(delegate->heard.empty());
}

TEST_F(Engine, startsNoStreamWithoutCredentialsAndNoSecondOne) {
    const auto password = std::exchange(chat->password, std::nullopt);
    EXPECT_FALSE(chat->connect());
    advance(1h);
    chat->password = password;
    chat->connect();
    EXPECT_TRUE(chat->connect());
    EXPECT_TRUE(delegate->heard.empty());
    stream().authenticate();
    enter();
    delegate->take();
    EXPECT_TRUE(chat->connect());
    EXPECT_EQ(delegate->take(), (Heard{"connected", "joined before"}));
    EXPECT_EQ(streams(), 1U);
    EXPECT_EQ(stream().sent.size(), 2U);
}

TEST_F(Engine, reportsASilentServerOnceAndStillTakesALateSuccess) {
    chat->connect();
    advance(29s);
    EXPECT_TRUE(delegate->heard.empty());
    advance(1s);
    EXPECT_EQ(delegate->take(), Heard{"timed out"});
    stream().end(XmppLoss::timedOut);
    advance(1h);
    EXPECT_TRUE(delegate->heard.empty()) << "one report for one connect()";
    ASSERT_EQ(streams(), 2U);
    stream().authenticate();
    enter();
    EXPECT_EQ(delegate->take(), (Heard{"connected", "joined"}));
}

TEST_F(Engine, reportsAServerThatRefusesAgainAndAgain) {
    chat->connect();
    for (int second = 0; second < 40; ++second) {
        advance(1s);
        stream().end(XmppLoss::refused);
    }
    EXPECT_EQ(streams(), 41U);
    EXPECT_EQ(delegate->take(), Heard{"timed out"});
    EXPECT_TRUE(chat->connect()) << "a person tries again";
    delegate->onEvent = [&](const std::string& event) {
        if (event == "timed out") chat->disconnect();
    };
    advance(30s);
    EXPECT_EQ(delegate->take(), (Heard{"timed out", "disconnected"}));
    stream().end(XmppLoss::timedOut);
    advance(1h);
    EXPECT_EQ(streams(), 41U) << "told so inside the report, it stays down";
}

TEST_F(Engine, healsALostStreamAndEndsInTheRoom) {
    join();
    stream().end(XmppLoss::lost);
    EXPECT_EQ(delegate->take(), Heard{"lost"});
    EXPECT_FALSE(chat->isRoomJoined());
    EXPECT_NE(chat->sendGroupchatMessage("into the void", false), ChatSend::sent);
    ASSERT_EQ(streams(), 2U);
    stream().end(XmppLoss::refused);
    ASSERT_EQ(streams(), 3U);
    stream().authenticate();
    enter();
    EXPECT_EQ(delegate->take(), (Heard{"connected", "joined"}));
    EXPECT_EQ(chat->roomName, "help@rooms.test");
}

TEST_F(Engine, doesNotFightForItsResource) {
    join();
    const auto callbacks = stream().callbacks;
    callbacks.ended({XmppLoss::closedByServer, "conflict", "replaced"});
    callbacks.authenticated("late@example.test/kit");
    EXPECT_EQ(delegate->take(), Heard{"disconnected: replaced"});
    EXPECT_EQ(streams(), 1U);
    EXPECT_FALSE(chat->isConnected());
}

TEST_F(Engine, givesUpOnRefusedCredentialsAlsoWhenMaintained) {
    for (const bool maintained : {false, true}) {
        chat->maintainConnection = maintained;
        chat->connect();
        stream().end(XmppLoss::credentials, "no");
        auto heard = delegate->take();
        EXPECT_EQ(heard.front(), "refused");
        EXPECT_EQ(heard.back(), "disconnected: no");
        advance(1h);
        EXPECT_TRUE(delegate->heard.empty());
    }
    EXPECT_EQ(streams(), 2U);
}

TEST_F(Engine, reportsACertificateAtOnceAndStops) {
    chat->connect();
    stream().end(XmppLoss::certificate, "untrusted");
    EXPECT_EQ(delegate->take(), Heard{"failed: untrusted"});
    EXPECT_EQ(streams(), 1U);
    advance(30s);
    EXPECT_EQ(delegate->take(), Heard{"timed out"});
}

TEST_F(Engine, keepsAMaintainedStreamForTheNextRoom) {
    chat->maintainConnection = true;
    join();
    chat->disconnect();
    EXPECT_EQ(stream().sent.back(),
              "<presence type=\"unavailable\" to=\"help@rooms.test/members_users:1\"/>");
    EXPECT_TRUE(delegate->heard.empty());
    // The same room at once: its farewell, still on the way, must not count for the new visit.
    EXPECT_TRUE(chat->connect());
    stream().receive("<presence type='unavailable' from='help@rooms.test/members_users:1'/>");
    enter();
    EXPECT_EQ(delegate->take(), (Heard{"connected", "joined"}));
    EXPECT_EQ(streams(), 1U);
}

TEST_F(Engine, isInOneRoomAtATime) {
    const auto farewell = [](const std::string& room) {
        return "<presence type=\"unavailable\" to=\"" + room + "/members_users:1\"/>";
    };
    join();
    chat->openConversation("another");
    EXPECT_EQ(stream().sent.back(), farewell("help@rooms.test"));
    EXPECT_EQ(chat->sendGroupchatMessage("for the other", false), ChatSend::offline);
    say("you", "late");
    EXPECT_EQ(list(), Heard{});
    EXPECT_EQ(delegate->take(), Heard{});
    stream().end(XmppLoss::lost);
    stream().authenticate();
    EXPECT_EQ(stream().sent, Heard{"<presence/>"}) << "nobody has named the other room yet";
    chat->joinRoom("other@rooms.test", chat->nickname);
    chat->joinRoom("third@rooms.test", chat->nickname);
    EXPECT_EQ(stream().sent.at(2), farewell("other@rooms.test")) << "a join under way";
    enter("third@rooms.test");
    chat->joinRoom("help@rooms.test", chat->nickname);
    EXPECT_EQ(stream().sent.at(4), farewell("third@rooms.test"));
    enter();
    EXPECT_EQ(chat->roomName, "help@rooms.test");
}

TEST_F(Engine, doesNotEnterARoomThatWasLeftOnTheWay) {
    chat->maintainConnection = true;
    join();
    stream().end(XmppLoss::lost);
    chat->leaveRoom();
    stream().authenticate();
    EXPECT_EQ(stream().sent, Heard{"<presence/>"});
    EXPECT_EQ(delegate->take(), (Heard{"lost", "connected"}));
    chat->connect();
    chat->leaveRoom();
    enter();
    EXPECT_THAT(stream().sent.back(), testing::HasSubstr("unavailable"));
    advance(31s);
    EXPECT_EQ(delegate->take(), Heard{"connected"}) << "neither joined, nor too late for it";
    const auto observation = NotificationCenter::shared().addObserver(
        std::string(unreadCountUpdatedNotification), [&](const auto&) { chat->disconnect(); });
    chat->maintainConnection = false;
    chat->connect();
    enter();
    EXPECT_EQ(delegate->take(), (Heard{"connected", "disconnected"}));
}

TEST_F(Engine, noticesAnotherNetworkAtOnce) {
    chat->connect();
    auto& network = *fake.reachability->refs.back();
    const auto change = [&](std::uint32_t flags) {
        network.change(flags);
        fake.queue->drain();
    };
    change(0);
    EXPECT_EQ(streams(), 1U);
    change(reachabilityReachable);
    ASSERT_EQ(streams(), 2U) << "the first attempt hangs in a dead network";
    EXPECT_TRUE(fake.xmpp->streams.front()->destroyed);
    stream().authenticate();
    enter();
    change(reachabilityReachable | reachabilityIsWWAN);
    EXPECT_THAT(stream().sent.back(), testing::HasSubstr("urn:xmpp:ping"));
    network.change(reachabilityReachable);
    chat->disconnect();
    fake.queue->drain();
    EXPECT_FALSE(network.callback);
    EXPECT_EQ(streams(), 2U);
}

TEST_F(Engine, tellsTheEndOfAnOldStreamFromTheLossOfANewOne) {
    join();
    chat->disconnect();
    const auto old = fake.xmpp->streams.back();
    chat->connect();
    stream().authenticate();
    old->end(XmppLoss::requested);
    EXPECT_TRUE(chat->isConnected());
    EXPECT_FALSE(chat->disconnectRequested);
    stream().end(XmppLoss::lost);
    EXPECT_EQ(streams(), 3U);
}

TEST_F(Engine, pingsAndDropsAConnectionOnWhichNobodyAnswers) {
    join();
    advance(120s);
    const auto ping = Stanza::parse(stream().sent.back());
    ASSERT_TRUE(ping->child("ping", "urn:xmpp:ping"));
    stream().receive("<iq type='error' id='" + *ping->attribute("id") + "'/>");
    advance(119s);
    EXPECT_EQ(stream().sent.size(), 3U);
    advance(1s);
    EXPECT_EQ(stream().sent.size(), 4U);
    advance(9s);
    EXPECT_FALSE(stream().aborted);
    advance(1s);
    EXPECT_TRUE(stream().aborted);
    stream().end(XmppLoss::lost);
    advance(1h);
    EXPECT_EQ(fake.xmpp->streams.front()->sent.size(), 4U) << "no ping after the end";
}

TEST_F(Engine, answersPingsAndRefusesOtherRequests) {
    join();
    stream().receive(
        "<iq type='get' id='1' from='example.test'><ping xmlns='urn:xmpp:ping'/></iq>");
    EXPECT_EQ(stream().sent.back(), "<iq type=\"result\" id=\"1\" to=\"example.test\"/>");
    stream().receive(
        "<iq type='set' id='2'><query xmlns='jabber:iq:roster'><item jid='a@b'/></query></iq>");
    EXPECT_THAT(stream().sent.back(), testing::HasSubstr("service-unavailable"));
    EXPECT_THAT(fake.log->lines, testing::Contains("Friend: a@b"));
}

class EngineEnd : public Engine, public testing::WithParamInterface<const char*> {};

TEST_P(EngineEnd, insideAReportIsSurvived) {
    delegate->onEvent = [this](const std::string& event) {
        if (event == GetParam()) chat.reset();
    };
    const auto step = [this](const auto& deed) {
        if (chat) deed();
    };
    chat->connect();
    const auto callbacks = stream().callbacks;
    step([&] { advance(30s); });
    step([&] { stream().authenticate(); });
    step([&] { enter(); });
    step([&] { say("you", "hi"); });
    step([&] {
        stream().receive("<presence type='unavailable' from='help@rooms.test/members_users:1'/>");
    });
    step([&] { chat->disconnect(); });
    step([&] { stream().end(XmppLoss::credentials); });
    EXPECT_FALSE(chat) << "was not heard: " << GetParam();
    fake.queue->drain();
    EXPECT_TRUE(stream().destroyed);
    EXPECT_EQ(fake.queue->pendingTimers(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Reports, EngineEnd,
                         testing::Values("timed out", "connected", "joined", "refresh",
                                         "line you: hi", "left", "disconnected"));

}  // namespace
}  // namespace supportsdk::test
