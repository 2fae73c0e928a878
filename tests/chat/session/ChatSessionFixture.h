#pragma once

#include "supportsdk/chat/ChatViewController.h"
#include "supportsdk/chat/QDChatViewModel.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/core/EventManager.h"
#include "supportsdk/core/EventNames.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/SealedBlock.h"

namespace supportsdk::test {

/// An open issue, its chat screen, and everything around them faked.
class ChatSession : public testing::Test {
 public:
    struct Picture : QDChatViewController::View {
        void reloadData() override { ++reloads; }
        void stopRefresh() override { ++refreshesStopped; }
        void addSuggestions(QDChatAutocompletionTableView&) override { ++suggestionsInView; }
        void removeSuggestions(QDChatAutocompletionTableView&) override { --suggestionsInView; }
        int suggestionsInView = 0;
        int reloads = 0;
        int refreshesStopped = 0;
    };
    struct Companion : ChatRating, ChatCalls {
        void displayRatingScreen() override { log.emplace_back("rating"); }
        void startVideoChat(const std::string& room, const std::string& token) override {
            log.push_back("video " + room + " " + token);
        }
        void startAppScreenSharing(const std::string& room, const std::string& token) override {
            log.push_back("screen " + room + " " + token);
        }
        void stopVideoSession() override { log.emplace_back("stop"); }
        std::vector<std::string> log;
    };

    ChatSession() {
        fakes.mainBundle->infos["CFBundleDisplayName"] = "Host";
        support = Support::create(
            {{"apiHost", "https://api.test"}, {"integrationId", "9"}, {"apiKey", apiKey}}, {},
            fakes.platform);
        fakes.http->answerTo("/app/get", 200, Json::object());
        support->identity.membersUsersId = std::optional<std::string>("7");
        events_ = EventManager::addObserver([this](const Notification& notification) {
            events.push_back(notification.object.text().value_or(""));
        });
    }

    // Streams that were let go of inside their own callbacks.
    ~ChatSession() override { fakes.queue->drain(); }

    /// The credentials as an issue carries them.
    static std::string credentialBlock(const Json& credentials) {
        return sealedBlock(credentials.dump(), apiKey);
    }

    static Json openIssue(const std::string& conversation = "c1") {
        return {{"id", "55"},
                {"status", 1},
                {"comm_id", conversation},
                {"xmpp_data", credentialBlock({{"jid", "u7@chat.test/kit"},
                                               {"password", "pw"},
                                               {"host", "127.0.0.1"},
                                               {"port", 5300},
                                               {"resource", "users:7;tablet"}})}};
    }

    /// Opens the screen, as whoever shows screens does.
    void open(const Json& issue = openIssue(), bool readOnly = false) {
        screen = ChatViewController::create(support, std::make_shared<QDIssue>(issue));
        screen->chatRoomTitle = "";
        screen->isReadOnly = readOnly;
        screen->view = picture;
        screen->rating = companion;
        screen->calls = companion;
        screen->viewDidLoad();
        appear();
    }
    void appear() {
        screen->viewWillAppear();
        screen->viewDidAppear();
    }
    void disappear() {
        screen->viewWillDisappear();
        screen->viewDidDisappear();
    }
    void answerChatGet() {
        answer("/chat/get/c1",
               {{"external_id", "room@rooms.test"},
                {"access_token", "t"},
                {"participants_eligible",
                 {{"users:7", {{"name", "Ada"}}}, {"agent:1", {{"alias", "@bo"}}}}}});
    }
    void join() {
        stream().authenticate();
        enterRoom();
    }
    void enterRoom() const {
        stream().receive(
            "<presence from='room@rooms.test/users:7'><x xmlns="
            "'http://jabber.org/protocol/muc#user'><status code='110'/></x>"
            "</presence>");
    }
    /// All the way into the room.
    void openAndJoin() {
        open();
        answerChatGet();
        answer("/chat/enter/c1", Json::object());
        join();
    }
    void receive(const std::string& body, const std::string& from = "agent:1") {
        Stanza stanza("message");
        stanza.root().append_attribute("type").set_value("groupchat");
        stanza.root().append_attribute("from").set_value(("room@rooms.test/" + from).c_str());
        stanza.root().append_attribute("id").set_value(++lastId_);
        stanza.root().append_child("body").text().set(body.c_str());
        stream().receive(stanza.xml());
    }
    void answer(const std::string& part, const Json& body, int status = 200) {
        fakes.http->answerTo(part, status, body);
    }
    [[nodiscard]] FakeXmppStream::State& stream() const { return *fakes.xmpp->streams.back(); }
    [[nodiscard]] int requests(const std::string& part) const {
        return static_cast<int>(std::count_if(
            fakes.http->sent.begin(), fakes.http->sent.end(),
            [&](const auto& sent) { return sent.request.url.find(part) != std::string::npos; }));
    }
    [[nodiscard]] bool wasSent(const std::string& text) const {
        return std::any_of(stream().sent.begin(), stream().sent.end(), [&](const auto& stanza) {
            return stanza.find(text) != std::string::npos;
        });
    }
    [[nodiscard]] std::vector<std::string> lines() const {
        std::vector<std::string> all;
        for (const auto& group : support->chat->viewModel->messageGroups()) {
            for (const auto& line : group)
                all.push_back((line->isMe ? "me: " : "they: ") + line->text.value_or("(none)"));
        }
        return all;
    }

    static constexpr const char* apiKey = "key";
    FakePlatform fakes;
    std::shared_ptr<Support> support;
    std::shared_ptr<Picture> picture = std::make_shared<Picture>();
    std::shared_ptr<Companion> companion = std::make_shared<Companion>();
    std::shared_ptr<ChatViewController> screen;
    std::vector<std::string> events;

 private:
    Registration events_;
    int lastId_ = 0;
};

}  // namespace supportsdk::test
