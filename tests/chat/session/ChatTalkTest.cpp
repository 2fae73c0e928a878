#include "supportsdk/core/BaseWebViewController.h"
#include "tests/chat/session/ChatSessionFixture.h"

namespace supportsdk::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

std::string invitation(const std::string& room) {
    return Json{{"secret", QuorrandChatMessage::MD5("video_chat")},
                {"context", {{"from", room}, {"from_user", "agent:1"}}}}
        .dump();
}

TEST_F(ChatSession, LinesAskForTheIssueAtOnceAndInABurstOnceASecond) {
    openAndJoin();
    const auto before = requests("/issues/55");
    receive("one");
    EXPECT_EQ(requests("/issues/55"), before + 1);
    receive("two");
    receive("three");
    EXPECT_EQ(requests("/issues/55"), before + 1);
    fakes.queue->advance(std::chrono::seconds{1});
    EXPECT_EQ(requests("/issues/55"), before + 2);
    fakes.queue->advance(std::chrono::seconds{2});
    EXPECT_EQ(requests("/issues/55"), before + 2) << "nothing new has come";
    receive("four");
    EXPECT_EQ(requests("/issues/55"), before + 3);
    receive("resolved");
    answer("/issues/55", {{"results", {{{"id", "55"}, {"status", 3}}}}});
    screen->cancel();
    answer("/issues/55", {{"results", {{{"id", "55"}, {"status", 7}}}}});
    EXPECT_EQ(support->rateableIssueId, "55") << "no second has passed since the last line";
}

TEST_F(ChatSession, TypedTextIsKeptUntilItCanGoOut) {
    open();
    auto& bar = *screen->entryView;
    bar.setText("too early");
    EXPECT_TRUE(bar.isSendEnabled());
    bar.send();
    EXPECT_EQ(bar.text(), "too early") << "nothing that was typed is lost";
    EXPECT_EQ(fakes.progress->shown.back(),
              "error You are not connected. Your message has not been sent.");

    answerChatGet();
    join();
    bar.setText(std::string(300'000, 'x'));
    bar.send();
    EXPECT_EQ(bar.text().size(), 300'000U);
    EXPECT_EQ(fakes.progress->shown.back(), "error Your message is too long to be sent.");
    bar.setText("\x01");
    bar.send();
    EXPECT_EQ(bar.text(), "") << "there was nothing in it";

    const auto sent = stream().sent.size();
    bar.send();
    bar.setText(bar.placeholder);
    bar.send();
    EXPECT_EQ(stream().sent.size(), sent);
    EXPECT_EQ(bar.text(), "");
}

TEST_F(ChatSession, LinesThatNeverArrivedComeBack) {
    openAndJoin();
    auto& bar = *screen->entryView;
    const auto data = QuorrandChatMessage::createJSONMessage("qd-bot://x", "users:7", "1");
    const auto told = [&](const std::vector<std::string>& texts) {
        screen->chatDidNotSend(*support->chat, texts);
        EXPECT_EQ(fakes.progress->shown.back(), "error Your message has not been sent.");
    };
    told({data});
    EXPECT_EQ(bar.text(), "");
    told({"one", data, R"({"typed": 1})", "two"});
    EXPECT_EQ(bar.text(), "one\n{\"typed\": 1}\ntwo");
    EXPECT_TRUE(bar.isSendEnabled());
    told({"three"});
    EXPECT_EQ(bar.text(), "one\n{\"typed\": 1}\ntwo") << "what is being typed stays";
    EXPECT_EQ(fakes.presenter->alerts.back().message, "Your message has not been sent.\n\nthree");
    bar.setText("");
    disappear();
    told({"four"});
    EXPECT_EQ(bar.text(), "") << "nobody looks at this bar any more";
    EXPECT_EQ(fakes.presenter->alerts.back().message, "Your message has not been sent.\n\nfour");
}

TEST_F(ChatSession, BurstOfLinesIsOneReload) {
    openAndJoin();
    screen->addTypingMessage();
    fakes.queue->advance(1s);
    const int before = picture->reloads;
    for (int i = 0; i < 20; ++i) receive("line " + std::to_string(i));
    EXPECT_EQ(support->chat->typingType, 0);
    EXPECT_EQ(lines().size(), 20);
    fakes.queue->advance(9ms);
    EXPECT_EQ(picture->reloads, before);
    fakes.queue->advance(1s);
    EXPECT_EQ(picture->reloads, before + 1);
    for (int i = 0; i < 100; ++i) {
        receive("a room that never pauses");
        fakes.queue->advance(5ms);
    }
    EXPECT_EQ(picture->reloads, before + 3) << "after 250 ms, and after 500";
    stream().end(XmppLoss::lost);
    join();
    fakes.queue->advance(1s);
    const int healed = picture->reloads;
    stream().receive("<message type='groupchat' from='room@rooms.test'><subject/></message>");
    fakes.queue->advance(1s);
    EXPECT_EQ(picture->reloads, healed + 1) << "the old lines are back, and no new one came";

    answer("/issues/55", {{"results", {{{"id", "55"}, {"status", 7}}}}});
    EXPECT_EQ(support->rateableIssueId, "55");
}

TEST_F(ChatSession, StrangerIsShownOnceTheServiceKnowsHim) {
    openAndJoin();
    receive("who am I?", "agent:2");
    EXPECT_THAT(lines(), IsEmpty());
    answer("/chat/get/c1", {{"participants_eligible", {{"agent:2", Json::object()}}}});
    EXPECT_THAT(lines(), ElementsAre("they: who am I?"));
    const int before = picture->reloads;
    fakes.queue->advance(1s);
    EXPECT_EQ(picture->reloads, before + 1);

    receive("and I?", "agent:3");
    disappear();
    open();
    answer("/chat/get/c1", {{"external_id", "room@rooms.test"},
                            {"participants_eligible", {{"agent:3", Json::object()}}}});
    EXPECT_THAT(lines(), ElementsAre("they: and I?"));
}

TEST_F(ChatSession, ButtonAddressesAreFollowedBySchemeExactly) {
    openAndJoin();
    receive("choose");
    const auto line = screen->lastMessage();
    const auto press = [&](const std::optional<std::string>& address) {
        stream().sent.clear();
        screen->handleButtonAction(address, "label", line);
        return stream().sent.size();
    };
    for (const auto* silent :
         {"", "https://x", "HTTP://x", "QD-MSG://x", "qd-msg://", "qd-msg:x", "qd-action://?a=b&c",
          "qd-relay://x", "qd-connect://x", "mailto:x", ":", "\xFF"})
        EXPECT_EQ(press(silent), 0) << silent;
    EXPECT_EQ(press(std::nullopt), 0);
    EXPECT_THAT(fakes.presenter->presented, IsEmpty());

    EXPECT_EQ(press("qd-msg://Yes, please: 50% & more"), 1);
    EXPECT_TRUE(wasSent("<body>Yes, please: 50% &amp; more</body>"));
    EXPECT_EQ(support->chat->typingType, 0);

    for (const auto* address : {"qd-bot://next", "qd-data:1"}) {
        support->chat->typingType = 0;
        EXPECT_EQ(press(address), 1);
        const auto body = Stanza::parse(stream().sent.back())->childText("body");
        EXPECT_EQ(body, QuorrandChatMessage::createJSONMessage(address, "users:7", *line->id));
        EXPECT_EQ(support->chat->typingType, 2);
    }

    press("http://help.test/a b");
    const auto& navigation =
        dynamic_cast<NavigationController&>(*fakes.presenter->presented.back());
    auto& page = dynamic_cast<BaseWebViewController&>(*navigation.children.back());
    EXPECT_EQ(page.initialUrl, "http://help.test/a b");
    EXPECT_EQ(page.title, "Attachment");
    page.viewDidLoad();
    EXPECT_EQ(page.leftBarButtons.front().label, "Cancel");
}

TEST_F(ChatSession, AttachmentAndBackKeepsTheListAndCountsWhatIsUnseen) {
    openAndJoin();
    receive(Json{{"secret", QuorrandChatMessage::MD5("attachment")},
                 {"attachment", {{"url", "https://files.test/1"}}}}
                .dump());
    screen->chatDidTapAttachmentForMessage(*support->chat, screen->lastMessage());
    EXPECT_EQ(fakes.presenter->presented.size(), 1);
    disappear();
    const int before = picture->reloads;
    appear();
    EXPECT_EQ(picture->reloads, before);
    disappear();
    EXPECT_EQ(requests("/chat/exit/c1"), 2);
    receive("unseen");
    EXPECT_EQ(support->chat->unreadMessageCount, 1);
    appear();
    EXPECT_EQ(picture->reloads, before + 1);
    EXPECT_EQ(support->chat->unreadMessageCount, 0);
}

TEST_F(ChatSession, ArticleOpensOnceAndNeverTheWrongOne) {
    openAndJoin();
    receive(
        Json{{"secret", QuorrandChatMessage::MD5("kb")}, {"kb", {{"id", "k1"}, {"preview", "p"}}}}
            .dump());
    const auto line = screen->lastMessage();
    const auto tap = [&](const Json& results, int status = 200) {
        screen->handleMessageTapped(line);
        answer("/kb/get?id=k1", {{"results", results}}, status);
    };
    screen->messageTapped({"", std::shared_ptr<void>(line), {}});
    screen->messageTapped({"", std::shared_ptr<void>(std::make_shared<int>(1)), {}});
    answer("/kb/get?id=k1", {{"results", {{{"body", "<p>one</p>"}}, 5}}});
    ASSERT_EQ(fakes.presenter->pushed.size(), 1);
    EXPECT_EQ(fakes.presenter->pushed.back(), screen->kbViewController);
    EXPECT_EQ(screen->kbViewController->title, "Knowledge Base");
    EXPECT_EQ(screen->kbViewController->html, "<p>one</p>");
    EXPECT_EQ(screen->kbViewController->initialUrl, "");

    for (const auto& results : {Json(), Json::array(), Json{{{"body", nullptr}}}, Json{1}}) {
        tap(results);
        EXPECT_EQ(fakes.presenter->alerts.back().title,
                  "Unable to retrieve knowledge base article");
    }
    tap(nullptr, 404);
    EXPECT_THAT(fakes.presenter->alerts.back().message, testing::HasSubstr("404"));
    screen->chatDidTapKBForMessage(*support->chat, line);
    disappear();
    answer("/kb/get?id=k1", {{"results", {{{"body", "late"}}}}});
    EXPECT_EQ(fakes.presenter->pushed.size(), 1) << "another screen is on view";
}

TEST_F(ChatSession, OnlyTheNewestInvitationAsksHowToJoin) {
    openAndJoin();
    receive(invitation("call-1"));
    const auto older = screen->lastMessage();
    receive(invitation("call-2"));
    const auto newest = screen->lastMessage();
    screen->chatDidTapMessageForMessage(*support->chat, older);
    screen->handleMessageTapped(older);
    EXPECT_THAT(fakes.presenter->alerts, IsEmpty());

    screen->chatDidTapMessageForMessage(*support->chat, newest);
    EXPECT_EQ(fakes.presenter->alerts.back().message, "What would you like to do?");
    const Json call = {{"external_id", "r"}, {"access_token", "t"}};
    for (const auto* choice :
         {"Video Chat", "Share Screen", "All Device Screens", "Share Screen"}) {
        screen->joinVideoChat("call-2");
        fakes.presenter->choose(choice);
        EXPECT_EQ(fakes.progress->shown.back(), "status Joining call");
        answer("/chat/get/call-2", call);
    }
    EXPECT_THAT(companion->log, ElementsAre("video r t", "screen r t"))
        << "once the whole device is shared, it stays so";
    EXPECT_EQ(fakes.defaults->fake("group.com.goquorrand.BroadcastExtension").values["roomName"],
              "r");
    screen->videoChatGet("call-2");
    answer("/chat/get/call-2", Json::object(), 404);
    EXPECT_EQ(fakes.progress->shown.back(), "error Unable to join call.");

    screen->isVideoUnavailable = true;
    screen->chatDidTapMessageForMessage(*support->chat, newest);
    EXPECT_EQ(fakes.presenter->alerts.back().message,
              "Video chat and screen sharing is unavailable in this version.");
}

TEST_F(ChatSession, RoadsForHosts) {
    openAndJoin();
    for (const auto* choice : {"Application Screen", "All Device Screens", "Cancel"}) {
        screen->selectChatTypeWithInfo(Json());
        EXPECT_EQ(fakes.presenter->alerts.back().message, "What do you want to share?");
        fakes.presenter->choose(choice);
    }
    EXPECT_THAT(companion->log, ElementsAre("screen room@rooms.test t"));
    EXPECT_EQ(fakes.defaults->fake("group.com.goquorrand.BroadcastExtension").values["token"], "t");

    screen->confirmConnectLaunch();
    fakes.presenter->choose("OK");
    EXPECT_THAT(fakes.urlOpener->opened,
                ElementsAre("goquorrandconnect://prod/member/issue/read?issue_id=55"));

    std::optional<Json> heard;
    const auto observing = NotificationCenter::shared().addObserver(
        "com.goquorrand.supportsdk.RoomInformationNorification",
        [&](const Notification& notification) { heard = notification.userInfo; });
    ChatViewController::notifyRoom("r", "t");
    EXPECT_EQ(heard, (Json{{"room", "r"}, {"token", "t"}}));

    screen->applicationWillEnterBackground();
    EXPECT_TRUE(wasSent("type=\"unavailable\""));
}

TEST_F(ChatSession, PullAndMention) {
    openAndJoin();
    screen->refreshLists();
    EXPECT_TRUE(wasSent("maxstanzas=\"50\""));
    fakes.queue->advance(1s);
    EXPECT_EQ(picture->refreshesStopped, 1);

    auto& bar = *screen->entryView;
    bar.setText("ask ");
    for (const auto* who : {"agent:1", "nobody", "users:7", ""}) screen->addMentionToInput(who);
    EXPECT_EQ(bar.text(), "ask @bousers:7");

    EXPECT_THAT(screen->mentionSuggestions, ElementsAre("@all", "@bo"));
    const auto& list = *bar.autocompletionTableView;
    bar.frame = {0, 500, 320, 40};
    bar.setText("@b");
    EXPECT_EQ(list.frame.y, 500 - 30 - 3);
    EXPECT_EQ(picture->suggestionsInView, 1);
    screen->chatRefreshEligibleParticipants(*support->chat);
    answer("/chat/get/c1", {{"participants_eligible", {{"agent:2", {{"alias", "@new"}}}}}});
    EXPECT_THAT(list.suggestionsDictionary(), ElementsAre("@all", "@new"));
    bar.setText("");
    EXPECT_EQ(picture->suggestionsInView, 0);
    bar.attach();
    EXPECT_EQ(fakes.photoChooser->openings, 1);
    EXPECT_TRUE(support->chat->isActionRequested);
}

}  // namespace
}  // namespace supportsdk::test
