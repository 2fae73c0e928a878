#include <gmock/gmock.h>

#include <csignal>

#include "backends/strophe/StropheStreamFactory.h"
#include "service/prosody/ProsodyServer.h"
#include "tests/chat/engine/EngineFixture.h"
#include "tests/support/LoopMainQueue.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk::test {

namespace {

using namespace std::chrono_literals;

/// One person: an engine on a real stream, in or on the way to the room "case".
struct Person {
    Person(service::ProsodyServer& server, const std::shared_ptr<LoopMainQueue>& queue,
           const std::string& name, const std::string& nickname) {
        fake.platform->mainQueue = queue;
        fake.clock->time = std::chrono::system_clock::now();
        fake.platform->xmpp = std::make_shared<StropheStreamFactory>(
            StropheOptions{.mainQueue = queue,
                           .log = fake.log,
                           .extraAuthorities = {},
                           .allowClearTextOnLoopback = true});
        EXPECT_TRUE(server.registerAccount(name, "password of " + name));
        chat = QuorrandChat::create(fake.platform);
        chat->delegate = delegate;
        chat->jid = server.jid(name) + "/kit";
        chat->password = "password of " + name;
        chat->host = "127.0.0.1";
        chat->port = server.c2sPort();
        chat->muc = server.room("Case");
        chat->nickname = nickname;
        chat->me = nickname;
        chat->ignoreParticipantStatus = true;
    }

    [[nodiscard]] std::vector<std::string> list() const {
        std::vector<std::string> lines;
        for (const auto& line : chat->viewModel->messages())
            lines.push_back(line->from.value_or("") + ": " + line->text.value_or(""));
        return lines;
    }

    FakePlatform fake;
    std::shared_ptr<RecordingChatDelegate> delegate = std::make_shared<RecordingChatDelegate>();
    std::shared_ptr<QuorrandChat> chat;
};

struct RealServer : testing::Test {
    void SetUp() override { ASSERT_TRUE(server.start()); }

    [[nodiscard]] std::unique_ptr<Person> person(const std::string& name) {
        return std::make_unique<Person>(server, queue, name, name);
    }
    [[nodiscard]] bool hears(const Person& who, const std::string& event, long times = 1) const {
        return queue->pumpUntil([&] { return who.delegate->count(event) >= times; }, 20s);
    }
    [[nodiscard]] bool enters(const Person& who) const {
        return who.chat->connect() && hears(who, "joined");
    }
    [[nodiscard]] bool listens(const Person& who, const std::vector<std::string>& lines) const {
        return queue->pumpUntil([&] { return who.list() == lines; }, 20s);
    }

    const TemporaryFolder folder;
    service::ProsodyServer server{{.folder = folder.path}};
    std::shared_ptr<LoopMainQueue> queue = std::make_shared<LoopMainQueue>();
};

TEST_F(RealServer, carriesAConversationWithItsHistory) {
    const auto ann = person("ann");
    const auto tess = person("tess");
    ASSERT_TRUE(enters(*tess));
    tess->chat->sendGroupchatMessage("Hello <& \"wörld\" \xF0\x9F\x98\x80", false);
    ASSERT_TRUE(listens(*tess, {"tess: Hello <& \"wörld\" \xF0\x9F\x98\x80"}));

    ASSERT_TRUE(enters(*ann));
    ASSERT_TRUE(listens(*ann, tess->list()));
    EXPECT_TRUE(ann->chat->viewModel->lastMessage()->isDelayed);
    ann->chat->sendGroupchatMessage("hi\x01", false);
    ASSERT_TRUE(queue->pumpUntil([&] { return tess->list().size() == 2; }));
    EXPECT_EQ(tess->list().back(), "ann: hi");
    EXPECT_FALSE(tess->chat->viewModel->lastMessage()->isDelayed);
    ASSERT_TRUE(listens(*ann, tess->list())) << "the sender's own line, once";

    ann->chat->disconnect();
    ASSERT_TRUE(hears(*ann, "disconnected", 2));
    EXPECT_EQ(server.control().occupants(server.room("case"))->size(), 1U);
}

TEST_F(RealServer, refusesATakenNicknameAndAWrongPassword) {
    const auto ann = person("ann");
    ASSERT_TRUE(enters(*ann));
    const Person other(server, queue, "bob", "ann");
    other.chat->timeout = 1s;
    other.chat->connect();
    ASSERT_TRUE(hears(other, "join timed out"));
    EXPECT_THAT(other.fake.log->lines, testing::Contains("joining the chat room failed: conflict"));
    EXPECT_FALSE(other.chat->isRoomJoined());

    const auto eve = person("eve");
    eve->chat->password = "a guess";
    eve->chat->connect();
    ASSERT_TRUE(hears(*eve, "refused"));
    EXPECT_FALSE(eve->delegate->has("connected"));
}

TEST_F(RealServer, throwsPeopleOutAndLetsThemBackIn) {
    const auto ann = person("ann");
    ASSERT_TRUE(enters(*ann));
    ASSERT_TRUE(server.control().kick(server.room("case"), "ann"));
    ASSERT_TRUE(hears(*ann, "left"));
    ann->chat->connect();
    ASSERT_TRUE(hears(*ann, "joined", 2));
    ASSERT_TRUE(server.control().destroyRoom(server.room("case")));
    ASSERT_TRUE(hears(*ann, "left", 2));
    EXPECT_TRUE(ann->chat->isConnected());
}

TEST_F(RealServer, isFoundAgainAfterItsDeathAndAfterACut) {
    const auto ann = person("ann");
    const auto tess = person("tess");
    ASSERT_TRUE(enters(*ann) && enters(*tess));
    ::kill(server.processId(), SIGSTOP);
    EXPECT_EQ(ann->chat->sendGroupchatMessage("hello?", false), ChatSend::sent);
    server.kill();
    ASSERT_TRUE(queue->pumpUntil([&] { return !ann->chat->isConnected(); }));
    ASSERT_TRUE(server.start());
    ASSERT_TRUE(hears(*ann, "joined", 2) && hears(*tess, "joined", 2));
    ASSERT_TRUE(hears(*ann, "not sent: hello?"));
    ann->chat->sendGroupchatMessage("still there?", false);
    ASSERT_TRUE(listens(*tess, {"ann: still there?"}));

    ASSERT_EQ(server.control().cut(server.jid("tess")), 1);
    ASSERT_TRUE(hears(*tess, "joined", 3));
    tess->chat->sendGroupchatMessage("yes", false);
    ASSERT_TRUE(listens(*ann, {"ann: still there?", "tess: yes"}));
    ASSERT_TRUE(listens(*tess, ann->list())) << "history and traffic make the same list";

    // More than the room's history holds.
    const auto speak = [&](int from, int to) {
        std::vector<std::string> lines;
        for (; from < to; ++from)
            lines.push_back("<message><body>" + std::to_string(from) + "</body></message>");
        return server.control().say(server.room("case"), "robot", lines);
    };
    ASSERT_TRUE(speak(0, 60));
    ASSERT_TRUE(queue->pumpUntil([&] { return ann->list().size() == 62; }));
    ASSERT_EQ(server.control().cut(server.jid("ann")), 1);
    ASSERT_TRUE(speak(60, 100));
    ASSERT_TRUE(queue->pumpUntil([&] { return tess->list().size() == 102; }));
    ASSERT_TRUE(listens(*ann, tess->list())) << "nothing missing, nothing doubled";
}

}  // namespace

}  // namespace supportsdk::test
