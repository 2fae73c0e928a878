#pragma once

#include <gtest/gtest.h>

#include "supportsdk/chat/QDChatViewModel.h"
#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/chat/xmpp/Stanzas.h"
#include "supportsdk/core/NotificationCenter.h"
#include "tests/support/FakePlatform.h"

namespace supportsdk::test {

using Heard = std::vector<std::string>;

/// Writes down what it hears, in short words.
struct RecordingChatDelegate : QuorrandChatDelegate {
    void chatDidConnect(QuorrandChat&, const ChatError&) override { hear("connected"); }
    void chatDidFailToConnect(QuorrandChat&, const ChatError& error) override {
        hear("failed: " + error->description);
    }
    void chatDidTimeoutConnect(QuorrandChat&, const ChatError&) override { hear("timed out"); }
    void chatDidNotAuthenticate(QuorrandChat&, const XmppStreamEnd&) override { hear("refused"); }
    void chatDidDisconnect(QuorrandChat&, const ChatError& error) override {
        hear(error ? "disconnected: " + error->description : "disconnected");
    }
    void chatDidLoseConnection(QuorrandChat&) override { hear("lost"); }
    void chatDidReceiveMessage(QuorrandChat&, const Message& message) override {
        hear("line " + message->from.value_or("-") + ": " + message->text.value_or("-"));
        lines.push_back(message);
    }
    void chatDidNotSend(QuorrandChat&, const std::vector<std::string>& texts) override {
        std::string event = "not sent:";
        for (const auto& text : texts) event += " " + text;
        hear(event);
    }
    void chatDidUpdateMessages(QuorrandChat&) override { hear("updated"); }
    void chatDidJoinRoom(QuorrandChat&, const std::shared_ptr<XmppRoom>& room,
                         const ChatError&) override {
        hear(room ? "joined" : "joined before");
    }
    void chatDidLeaveRoom(QuorrandChat&, const std::shared_ptr<XmppRoom>&,
                          const ChatError&) override {
        hear("left");
    }
    void chatDidTimeoutJoinRoom(QuorrandChat&, const std::shared_ptr<XmppRoom>&,
                                const ChatError&) override {
        hear("join timed out");
    }
    void chatDidUpdateUnreadCount(QuorrandChat&, std::uint64_t count) override {
        counts.push_back(count);
    }
    void chatRefreshEligibleParticipants(QuorrandChat&) override { hear("refresh"); }

    void hear(const std::string& event) {
        heard.push_back(event);
        if (onEvent) onEvent(event);
    }
    [[nodiscard]] bool has(const std::string& event) const { return count(event) > 0; }
    [[nodiscard]] long count(const std::string& event) const {
        return std::count(heard.begin(), heard.end(), event);
    }
    /// What was heard since the last call.
    std::vector<std::string> take() { return std::exchange(heard, {}); }

    std::vector<std::string> heard;
    std::vector<Message> lines;
    std::vector<std::uint64_t> counts;
    std::function<void(const std::string& event)> onEvent;
};

/// An engine with credentials for the room "help@rooms.test", on fakes.
struct Engine : testing::Test {
    Engine() {
        chat->delegate = delegate;
        chat->jid = "user@example.test/kit";
        chat->password = "secret";
        chat->muc = "help@rooms.test";
        chat->nickname = "members_users:1";
        chat->me = "members_users:1";
        chat->timeout = std::chrono::seconds{30};
    }
    // Links that were let go of inside their own callbacks.
    ~Engine() override { fake.queue->drain(); }

    [[nodiscard]] FakeXmppStream::State& stream() const { return *fake.xmpp->streams.back(); }
    [[nodiscard]] std::size_t streams() const { return fake.xmpp->streams.size(); }
    void advance(std::chrono::seconds duration) const { fake.queue->advance(duration); }

    /// One's own presence arrives.
    void enter(const std::string& room = "help@rooms.test") const {
        stream().receive(
            "<presence from='" + room +
            "/members_users:1'><x "
            "xmlns='http://jabber.org/protocol/muc#user'><status code='110'/></x></presence>");
    }
    void join() {
        chat->connect();
        stream().authenticate();
        enter();
        delegate->take();
    }
    /// The stream is lost, and another one takes its place in the room.
    void rejoin() {
        stream().end(XmppLoss::lost);
        stream().authenticate();
        enter();
    }
    /// The room has no more history.
    void subject() const {
        stream().receive("<message type='groupchat' from='help@rooms.test'><subject/></message>");
    }
    /// The last line that was sent comes back as if from the occupant `from`.
    void reflect(const std::string& from = "members_users:1") const {
        auto line = Stanza::parse(stream().sent.back());
        setAttribute(line->root(), "from", "help@rooms.test/" + from);
        stream().receive(line->xml());
    }
    [[nodiscard]] Heard list() const {
        Heard lines;
        for (const auto& line : chat->viewModel->messages())
            lines.push_back(line->text.value_or("-"));
        return lines;
    }
    void say(const std::string& from, const std::string& body, const std::string& more = {}) const {
        stream().receive("<message type='groupchat' from='help@rooms.test/" + from + "'><body>" +
                         body + "</body>" + more + "</message>");
    }

    FakePlatform fake;
    std::shared_ptr<RecordingChatDelegate> delegate = std::make_shared<RecordingChatDelegate>();
    std::shared_ptr<QuorrandChat> chat = QuorrandChat::create(fake.platform);
};

}  // namespace supportsdk::test
