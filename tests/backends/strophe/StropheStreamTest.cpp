#include "backends/strophe/StropheStream.h"

#include "backends/strophe/StreamInbox.h"

#include "tests/backends/strophe/StreamFixture.h"

namespace supportsdk::test {
namespace {

using Clock = std::chrono::steady_clock;

std::string message(const std::string& to, const std::string& id, const std::string& body) {
    return "<message type='chat' to='" + to + "' id='" + id + "'><body>" + body +
           "</body></message>";
}

class StropheStreamTest : public ProsodyStreamTest {
 protected:
    void SetUp() override {
        ProsodyStreamTest::SetUp();
        ann = connect("ann@support.test/desk");
        tess = connect("tess@support.test/desk");
        ASSERT_TRUE(awaitUp(*ann));
        ASSERT_TRUE(awaitUp(*tess));
    }

    std::unique_ptr<WatchedStream> ann;
    std::unique_ptr<WatchedStream> tess;
};

TEST_F(StropheStreamTest, TwoStreamsAtOnceExchangeStanzas) {
    EXPECT_EQ(ann->authenticated, std::vector<std::string>{"ann@support.test/desk"});
    EXPECT_TRUE(ann->stream->isAuthenticated());
    EXPECT_FALSE(ann->stream->isConnecting());
    ann->stream->send(
        message("tess@support.test/desk", "1", "a &lt;b&gt; \xC3\xA9\xF0\x9F\x98\x80"));
    ASSERT_TRUE(queue->pumpUntil([&] { return !tess->received.empty(); }));
    EXPECT_EQ(tess->received[0]->childText("body"), "a <b> \xC3\xA9\xF0\x9F\x98\x80");
    EXPECT_EQ(tess->received[0]->attribute("from"), "ann@support.test/desk");
    EXPECT_FALSE(tess->received[0]->attribute("xmlns"));

    ann->stream->disconnect();
    ASSERT_TRUE(awaitEnd(*ann));
    EXPECT_EQ(ann->ends[0].loss, XmppLoss::requested);
    EXPECT_FALSE(ann->stream->isAuthenticated());
    EXPECT_TRUE(tess->ends.empty());
    ann->stream->send("<presence/>");
    EXPECT_EQ(log->text().find(password), std::string::npos);
    EXPECT_EQ(log->text().find("&lt;b"), std::string::npos);
}

TEST_F(StropheStreamTest, ManyAndLongStanzasArriveWholeInOrderAndSoon) {
    constexpr int count = 1000;
    for (int i = 0; i < count; ++i)
        ann->stream->send(message("tess@support.test/desk", std::to_string(i), "line"));
    ASSERT_TRUE(queue->pumpUntil([&] { return tess->received.size() == count; }));
    for (int i = 0; i < count; ++i)
        ASSERT_EQ(tess->received[static_cast<std::size_t>(i)]->attribute("id"), std::to_string(i));

    // Sizes around the limits of a read and of a TLS record, where bytes may stay behind unseen.
    for (const std::size_t size : {3900UL, 4096UL, 8192UL, 14000UL, 16384UL, 20000UL, 200000UL}) {
        tess->received.clear();
        const auto start = Clock::now();
        ann->stream->send(message("tess@support.test/desk", "big", std::string(size, 'x')));
        ASSERT_TRUE(queue->pumpUntil([&] { return !tess->received.empty(); })) << size;
        EXPECT_EQ(tess->received[0]->childText("body")->size(), size);
        // A byte left in the TLS layer waits for the next stanza, that is, for ever.
        EXPECT_LT(Clock::now() - start, std::chrono::seconds{2}) << size;
    }
}

TEST_F(StropheStreamTest, AMainThreadThatSleepsGetsEverythingAfterwards) {
    ASSERT_TRUE(server->control().createRoom(server->room("r")));
    ann->stream->send("<presence to='" + server->room("r") +
                      "/ann'><x xmlns='http://jabber.org/protocol/muc'/></presence>");
    ASSERT_TRUE(queue->pumpUntil([&] { return ann->find("<subject") != nullptr; }));
    ann->received.clear();
    const std::vector<std::string> lines(
        2000, "<message><body>" + std::string(500, 'y') + "</body></message>");
    ASSERT_TRUE(server->control().say(server->room("r"), "tess", lines));
    ASSERT_TRUE(queue->waitForPost());
    // An answer of the server behind the flood shows that all of it is on its way.
    ASSERT_TRUE(server->control().occupants(server->room("r")));
    EXPECT_TRUE(queue->pumpUntil([&] { return ann->received.size() == lines.size(); }));
}

TEST(StreamInbox, HoldsFewLongStanzas) {
    const auto queue = std::make_shared<LoopMainQueue>();
    std::size_t handled = 0;
    std::size_t handledWhenDrained = 0;
    const auto inbox = std::make_shared<StreamInbox>(
        queue, [&](const auto&) { ++handled; },
        [&] {
            if (handledWhenDrained == 0) handledWhenDrained = handled;
        });
    StanzaBuilder builder;
    std::size_t added = 0;
    for (; !inbox->isFull() && added < 512; ++added) {
        builder.open("message");
        builder.text(std::string(200'000, 'x'));
        builder.close();
        inbox->add(builder.finish());
    }
    EXPECT_EQ(added, 21) << "4 MiB";
    EXPECT_TRUE(queue->pumpUntil([&] { return handled == added; }));
    EXPECT_EQ(handledWhenDrained, 11) << "reading goes on when half of it is handled";
    EXPECT_FALSE(inbox->isFull());
}

TEST_F(StropheStreamTest, WhatIsQueuedIsSentBeforeTheEnd) {
    for (int i = 0; i < 50; ++i)
        ann->stream->send(message("tess@support.test/desk", "n", std::string(4000, 'z')));
    ann->stream->disconnect();
    EXPECT_FALSE(ann->stream->isAuthenticated());
    ASSERT_TRUE(awaitEnd(*ann));
    EXPECT_EQ(ann->ends[0].loss, XmppLoss::requested);
    EXPECT_TRUE(queue->pumpUntil([&] { return tess->received.size() == 50; }));
}

TEST_F(StropheStreamTest, TheServersEndsAreToldApart) {
    // The same resource once more: the server throws out the older one.
    auto other = connect("ann@support.test/desk");
    ASSERT_TRUE(awaitEnd(*ann));
    EXPECT_EQ(ann->ends[0].loss, XmppLoss::closedByServer);
    EXPECT_EQ(ann->ends[0].condition, "conflict");
    ASSERT_TRUE(awaitUp(*other));

    EXPECT_EQ(server->control().cut("tess@support.test"), 1);
    ASSERT_TRUE(awaitEnd(*tess));
    EXPECT_EQ(tess->ends[0].loss, XmppLoss::lost);

    server->stop();
    ASSERT_TRUE(awaitEnd(*other));
    EXPECT_EQ(other->ends[0].loss, XmppLoss::closedByServer);
    EXPECT_EQ(other->ends[0].condition, "system-shutdown");
    queue->pumpFor(milliseconds{50});
    EXPECT_EQ(ann->ends.size() + tess->ends.size() + other->ends.size(), 3U) << "each once";
}

TEST_F(StropheStreamTest, AStreamThatIsCutLeavesItsRoomsAtOnce) {
    const auto room = server->room("r");
    ann->stream->send("<presence to='" + room +
                      "/ann'><x xmlns='http://jabber.org/protocol/muc'/></presence>");
    ASSERT_TRUE(queue->pumpUntil([&] { return ann->find("<subject") != nullptr; }));
    auto control = server->control();
    const auto joined = control.events({}, milliseconds{5000});
    ASSERT_TRUE(joined);
    ann->stream->abort();
    ASSERT_TRUE(awaitEnd(*ann));
    EXPECT_EQ(ann->ends[0].loss, XmppLoss::lost);
    const auto left = control.events(joined->next, milliseconds{5000});
    ASSERT_TRUE(left);
    ASSERT_FALSE(left->events.empty());
    EXPECT_EQ(left->events[0].kind, service::RoomEvent::Kind::left);
    EXPECT_EQ(left->events[0].account, "ann@support.test");
}

TEST_F(StropheStreamTest, MayBeDestroyedInAnyStateAndInItsOwnCallbacks) {
    const auto destroyQuickly = [](std::unique_ptr<WatchedStream> stream) {
        const auto start = Clock::now();
        stream.reset();
        EXPECT_LT(Clock::now() - start, milliseconds{1000});
    };
    destroyQuickly(makeStream({}));
    for (const int wait : {0, 1, 3, 10, 20, 40, 80}) {
        auto stream = connect("ann@support.test/other");
        queue->pumpFor(milliseconds{wait});
        destroyQuickly(std::move(stream));
    }
    ann->stream->disconnect();
    destroyQuickly(std::move(ann));

    for (const bool inEnd : {false, true}) {
        auto factory = makeStream({authority->certificate()});
        bool called = false;
        auto& slot = factory->stream;
        XmppStream::Callbacks callbacks;
        callbacks.authenticated = [&](const std::string&) {
            if (inEnd) return slot->disconnect();
            slot.reset();
            called = true;
        };
        callbacks.ended = [&](const XmppStreamEnd&) {
            slot.reset();
            called = true;
        };
        slot->connect(optionsFor("ann@support.test"), std::move(callbacks));
        EXPECT_TRUE(queue->pumpUntil([&] { return called; }));
    }
    queue->pumpFor(milliseconds{50});
}

}  // namespace
}  // namespace supportsdk::test
