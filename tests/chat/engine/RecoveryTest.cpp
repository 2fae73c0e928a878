#include <gmock/gmock.h>

#include <random>

#include "tests/chat/engine/EngineFixture.h"

namespace supportsdk::test {
namespace {

using namespace std::chrono_literals;

constexpr const char* delayed = "<delay xmlns='urn:xmpp:delay' stamp='2026-01-31T12:01:00Z'/>";

TEST_F(Engine, putsItsLinesBackInFrontOfWhatTheRoomReplays) {
    join();
    for (const auto* line : {"a", "b"}) say("you", line);
    rejoin();
    EXPECT_EQ(delegate->take().back(), "joined");
    EXPECT_EQ(list(), Heard{});
    say("you", "b", delayed);
    say("you", "c", delayed);
    EXPECT_EQ(list(), (Heard{"a", "b", "c"})) << "though its digest was of another minute";
    rejoin();
    rejoin();
    delegate->take();
    subject();
    EXPECT_EQ(list(), (Heard{"a", "b", "c"})) << "a room that has forgotten everything";
    EXPECT_EQ(delegate->take(), Heard{"updated"}) << "the screen has shown an empty list since";
    say("members_users:1", "bye", "<x/>");
    // In order: first the farewell of a room that shuts down, then the end of the stream.
    stream().receive(
        "<presence type='unavailable' from='help@rooms.test/members_users:1'><x "
        "xmlns='http://jabber.org/protocol/muc#user'><status code='332'/></x></presence>");
    rejoin();
    subject();
    EXPECT_EQ(list(), (Heard{"a", "b", "c", "bye"}));
    EXPECT_THAT(fake.log->lines, testing::Not(testing::Contains(testing::HasSubstr("replayed"))));
}

TEST_F(Engine, putsNothingBackForThoseWhoLeft) {
    const std::vector<std::function<void()>> ways{
        [&] { chat->leaveRoom(); },
        [&] { chat->disconnect(); },
        [&] {
            chat->openConversation("another");
            chat->muc = "other@rooms.test";
        },
        [&] { chat->muc = "other@rooms.test"; },
    };
    for (const auto& leave : ways) {
        chat->muc = "help@rooms.test";
        join();
        say("you", "private");
        stream().end(XmppLoss::lost);
        leave();
        chat->connect();
        stream().authenticate();
        enter(*chat->muc);
        stream().receive("<message type='groupchat' from='" + *chat->muc +
                         "'><subject/></message>");
        EXPECT_EQ(list(), Heard{});
        chat->disconnect();
    }
}

TEST_F(Engine, noticesAGapThatTheHistoryMayNotFill) {
    join();
    say("you", "known");
    rejoin();
    for (int line = 0; line < 50; ++line) say("you", std::to_string(line), delayed);
    say("you", "live");
    EXPECT_EQ(list().size(), 52U);
    EXPECT_THAT(fake.log->lines, testing::Contains(testing::HasSubstr("none of the 50 lines")));
}

TEST_F(Engine, tellsWhichLinesNeverArrived) {
    join();
    for (const auto* line : {"lost", "arrived", "lost too"}) {
        chat->sendGroupchatMessage(line, true);
        if (line == std::string_view("arrived")) reflect("you");  // only a copy of its id
    }
    const auto id = *Stanza::parse(stream().sent.at(3))->attribute("id");
    rejoin();
    stream().receive("<message type='groupchat' id='" + id +
                     "' from='help@rooms.test/members_users:1'><body>arrived</body>" + delayed +
                     "</message>");
    chat->sendGroupchatMessage("on its way", true);
    EXPECT_FALSE(delegate->has("not sent: lost lost too"));
    subject();
    EXPECT_EQ(delegate->take().back(), "not sent: lost lost too");
    const auto sent = *Stanza::parse(stream().sent.back())->attribute("id");
    stream().receive("<message type='error' id='" + sent + "' from='help@rooms.test'/>");
    EXPECT_EQ(delegate->take(), Heard{"not sent: on its way"});
    rejoin();
    subject();
    EXPECT_EQ(delegate->take(), (Heard{"lost", "connected", "joined", "updated"})) << "once";
}

TEST_F(Engine, tellsAtOnceWhenThereIsNoWayBack) {
    join();
    chat->sendGroupchatMessage("a", true);
    stream().receive("<presence type='unavailable' from='help@rooms.test/members_users:1'/>");
    EXPECT_EQ(delegate->take(), (Heard{"left", "not sent: a"}));
    EXPECT_EQ(chat->sendGroupchatMessage("outside", false), ChatSend::offline);
    chat->connect();
    enter();
    chat->sendGroupchatMessage("b", true);
    stream().end(XmppLoss::lost);
    chat->disconnect();
    EXPECT_EQ(delegate->heard.at(3), "not sent: b") << "nobody will come back to see";
    join();
    chat->sendGroupchatMessage("c", true);
    chat->disconnect();
    EXPECT_FALSE(delegate->has("not sent: c")) << "it goes out before the farewell";
    join();
    chat->sendGroupchatMessage("d", true);
    stream().callbacks.ended({XmppLoss::closedByServer, "conflict", "replaced"});
    EXPECT_EQ(delegate->take().back(), "not sent: d");
}

TEST_F(Engine, keepsWhatWasNotSentUntilSomebodyOfItsConversationListens) {
    chat->commId = "a";
    join();
    chat->sendGroupchatMessage("unheard", true);
    chat->delegate.reset();
    rejoin();
    subject();
    chat->delegate = delegate;
    chat->sendGroupchatMessage("of a", true);
    stream().end(XmppLoss::lost);
    const auto open = [&](const char* conversation, const std::string& room) {
        chat->commId = conversation;
        chat->openConversation(conversation);
        chat->muc = room;
        chat->connect();
        if (!chat->isConnected()) stream().authenticate();
        enter(room);
    };
    open("b", "other@rooms.test");
    EXPECT_EQ(delegate->take(), (Heard{"lost", "connected", "joined"}));
    open("a", "help@rooms.test");
    EXPECT_EQ(delegate->take(), (Heard{"connected", "joined", "not sent: unheard of a"}));
    open("a", "help@rooms.test");
    EXPECT_EQ(delegate->take(), (Heard{"connected", "joined before"}));
}

TEST_F(Engine, losesNothingOfAStreamWhoseEndIsNotReportedYet) {
    const auto die = [&] {
        chat->sendGroupchatMessage("x", true);
        stream().connected = stream().authenticated = false;
        delegate->take();
    };
    join();
    say("you", "known");
    die();
    chat->connect();
    ASSERT_EQ(streams(), 2U);
    stream().authenticate();
    enter();
    subject();
    EXPECT_EQ(list(), Heard{"known"});
    EXPECT_EQ(delegate->take().back(), "not sent: x");
    die();
    chat->disconnect();
    EXPECT_EQ(delegate->heard.front(), "not sent: x");
}

TEST_F(Engine, checksAConnectionThatSwallowsALine) {
    join();
    const auto timers = fake.queue->pendingTimers();
    chat->sendGroupchatMessage("heard", true);
    reflect();
    EXPECT_EQ(fake.queue->pendingTimers(), timers) << "nothing to wait for";
    chat->sendGroupchatMessage("swallowed", true);
    advance(5s);
    chat->sendGroupchatMessage("another", true);
    advance(5s);
    const auto ping = Stanza::parse(stream().sent.back());
    ASSERT_TRUE(ping->child("ping", "urn:xmpp:ping"));
    advance(9s);
    EXPECT_EQ(stream().sent.size(), 6U) << "one ping is good for both";
    stream().receive("<iq type='result' id='" + *ping->attribute("id") + "'/>");
    advance(100s);
    EXPECT_FALSE(stream().aborted);
    advance(1s);
    EXPECT_EQ(stream().sent.size(), 7U) << "the usual ping, in its own time";
    advance(10s);
    EXPECT_TRUE(stream().aborted);
}

TEST_F(Engine, waitsForItsOwnGhostToLeaveTheRoom) {
    const auto refuse = [&](const char* type, const char* condition) {
        stream().receive(
            "<presence from='help@rooms.test/members_users:1' type='error'><error "
            "type='" +
            std::string(type) + "'><" + condition +
            " xmlns='urn:ietf:params:xml:ns:xmpp-stanzas'/></error></presence>");
    };
    join();
    stream().end(XmppLoss::lost);
    stream().authenticate();
    for (int attempt = 0; attempt < 10; ++attempt) {
        refuse("cancel", "conflict");
        advance(3s);
    }
    EXPECT_EQ(stream().sent.size(), 12U);
    EXPECT_EQ(delegate->take(), (Heard{"lost", "connected", "join timed out"}));
    EXPECT_THAT(fake.log->lines, testing::Contains(testing::HasSubstr("conflict")));
    refuse("wait", "service-unavailable");
    advance(29s);
    EXPECT_EQ(stream().sent.size(), 12U) << "no hurry any more";
    advance(1s);
    EXPECT_EQ(stream().sent.size(), 13U);
    enter();
    EXPECT_EQ(delegate->take(), Heard{"joined"});
    chat->maintainConnection = true;
    chat->disconnect();
    chat->connect();
    chat->disconnect();
    refuse("cancel", "conflict");
    chat->connect();
    enter();
    chat->sendGroupchatMessage("unseen", true);
    stream().end(XmppLoss::lost);
    stream().authenticate();
    refuse("auth", "forbidden");
    EXPECT_EQ(delegate->heard.back(), "not sent: unseen");
    const auto sent = stream().sent.size();
    advance(50s);
    EXPECT_EQ(stream().sent.size(), sent) << "neither after leaving nor when banned";
}

/// A room that keeps 50 lines, and a network that loses what it likes.
struct RandomConversation : Engine, testing::WithParamInterface<unsigned> {
    struct Line {
        std::string from, id, text;
        [[nodiscard]] std::string xml(const std::string& more) const {
            return "<message type='groupchat'" + (id.empty() ? "" : " id='" + id + "'") +
                   " from='help@rooms.test/" + from + "'><body>" + text + "</body>" + more +
                   "</message>";
        }
    };

    [[nodiscard]] unsigned upTo(unsigned limit) {
        return static_cast<unsigned>(random() % (limit + 1));
    }
    void accept(Line line) {
        ++missed;
        accepted.push_back(line.text);
        history.push_back(std::move(line));
        if (history.size() > 50) history.pop_front();
    }
    void someoneSpeaks() {
        const auto number = std::to_string(++lines);
        accept({"you", upTo(1) == 0 ? "" : "id" + number, number});
        if (chat->isRoomJoined()) stream().receive(history.back().xml(""));
    }
    void oneSpeaks() {
        const auto text = std::to_string(++lines);
        if (chat->sendGroupchatMessage(text, true) != ChatSend::sent) return;
        const auto id = *Stanza::parse(stream().sent.back())->attribute("id");
        const auto fate = upTo(4);
        if (fate == 0) return missing.push_back(text), lose();
        accept({"members_users:1", id, text});
        if (fate == 1) return lose();
        stream().receive(history.back().xml(""));
    }
    void lose() {
        stream().end(XmppLoss::lost);
        // Fewer than the room's history holds, with those of replays that are cut short.
        for (auto speaking = upTo(20); speaking > 0 && missed < 45; --speaking) someoneSpeaks();
        stream().authenticate();
        enter();
        const auto cut = upTo(2) == 0 ? upTo(60) : 60;
        for (std::size_t at = 0; at < history.size(); ++at) {
            if (at == cut) return lose();
            stream().receive(history[at].xml(delayed));
        }
        missed = 0;
        if (upTo(3) == 0) oneSpeaks();
        subject();
    }

    std::mt19937 random{GetParam()};
    std::deque<Line> history;
    std::vector<std::string> accepted, missing;
    int lines = 0;
    int missed = 0;
};

TEST_P(RandomConversation, listsEveryAcceptedLineOnceAndReportsTheOthers) {
    join();
    for (int step = 0; step < 120; ++step) upTo(2) == 0 ? oneSpeaks() : someoneSpeaks();
    lose();
    EXPECT_EQ(list(), accepted);
    Heard reported;
    for (const auto& event : delegate->heard) {
        std::istringstream words(event);
        std::string word;
        if (event.starts_with("not sent:") && words >> word >> word)
            while (words >> word) reported.push_back(word);
    }
    EXPECT_EQ(reported, missing);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomConversation, testing::Range(0U, 40U));

}  // namespace
}  // namespace supportsdk::test
