#include "supportsdk/chat/QDChatActionButton.h"
#include "supportsdk/chat/QDChatCollectionView.h"
#include "supportsdk/theme/Appearance.h"
#include "tests/chat/session/ChatSessionFixture.h"

namespace supportsdk::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

Json withTranscripts() {
    auto issue = ChatSession::openIssue();
    issue["transcripts"]["c1"] = {
        {"a", {{"message", "help"}, {"from_key", "MEMBERS_USERS:7"}}},
        {"b", {{"message", "sure"}, {"from_key", "users:1"}}},
    };
    return issue;
}

TEST_F(ChatSession, StaysEmptyWithoutUsableCredentials) {
    auto noBlock = openIssue();
    noBlock.erase("xmpp_data");
    auto garbage = openIssue();
    garbage["xmpp_data"] = "bm90IGVuY3J5cHRlZA==";
    auto noConversation = openIssue();
    noConversation.erase("comm_id");
    for (const auto& issue : {noBlock, garbage, noConversation, Json::object()}) {
        open(issue);
        EXPECT_EQ(fakes.http->sent.size(), 1) << issue;
        EXPECT_THAT(lines(), IsEmpty());
        disappear();
    }
}

TEST_F(ChatSession, ReadOnlyChatIsTranscriptsAndNothingElse) {
    open(withTranscripts(), true);
    EXPECT_FALSE(screen->entryView);
    EXPECT_THAT(screen->rightBarButtons, IsEmpty());
    EXPECT_THAT(lines(), ElementsAre("me: help", "they: sure"));
    EXPECT_EQ(screen->collectionView->dataSource.lock(), support->chat->viewModel);
    screen->send();
    screen->addMentionToInput("agent:1");
    EXPECT_EQ(fakes.http->sent.size(), 1);

    for (const auto& record : {Json(), Json(5), Json::array({1}), Json{{"a", nullptr}}}) {
        auto issue = openIssue();
        issue["transcripts"]["c1"] = record;
        open(issue, true);
    }
    EXPECT_THAT(lines(), ElementsAre("they: (none)"));

    auto odd = openIssue();
    odd["transcripts"]["c1"] = {
        {"1", {{"message", "last"}, {"sent", "2026-01-02 10:00:00.000"}}},
        {"2", {{"message", "first"}, {"sent", "2026-01-01 10:00:00.000"}}},
        {"3", {{"message", "first"}, {"sent", "2026-01-01 10:00:00.000"}}},
        {"4", {{"message", "never"}, {"sent", "2026-13-01 10:00:00.000"}, {"from_key", 7}}},
        {"5", "text"}};
    open(odd, true);
    EXPECT_THAT(lines(), ElementsAre("they: never", "they: (none)", "they: first", "they: last"));
}

TEST_F(ChatSession, ALiveChatKeepsItsLinesAndItsRoomWhileOneOfThePastIsRead) {
    openAndJoin();
    receive("first");
    disappear();
    auto past = withTranscripts();
    past["comm_id"] = "c0";
    past["xmpp_data"] = credentialBlock(
        {{"jid", "other@chat.test/kit"}, {"password", "x"}, {"resource", "users:8"}});
    past["transcripts"] = {{"c0", past["transcripts"]["c1"]}};
    open(past, true);
    const auto sent = stream().sent.size();
    screen->refreshLists();
    EXPECT_EQ(stream().sent.size(), sent) << "the room is not this chat's";
    receive("second");
    EXPECT_THAT(lines(), ElementsAre("me: help", "they: sure"));
    EXPECT_EQ(support->chat->jid, "u7@chat.test/kit");
    stream().end(XmppLoss::lost);
    fakes.queue->advance(30s);
    fakes.presenter->choose("Retry");
    EXPECT_EQ(support->chat->muc, "room@rooms.test");
    EXPECT_EQ(support->chat->me, "users:7");
    disappear();

    join();
    receive("third");
    EXPECT_THAT(lines(), ElementsAre("me: help", "they: sure"));
    past.erase("xmpp_data");
    open(past);
    EXPECT_THAT(lines(), IsEmpty());
    open(withTranscripts());
    const auto all = ElementsAre("they: first", "they: second", "they: third");
    EXPECT_THAT(lines(), all);
    answer("/chat/get/c1", Json::object(), 500);
    EXPECT_TRUE(screen->isReadOnly);
    EXPECT_THAT(lines(), all) << "each of them once";

    open(withTranscripts());
    const auto left = screen;
    open(past, true);
    answer("/chat/get/c1", Json::object(), 500);
    EXPECT_THAT(lines(), IsEmpty()) << "the list is another chat's";
}

TEST_F(ChatSession, AScreenThatWasLeftTouchesNoOtherChat) {
    open();
    disappear();
    const auto first = screen;
    open(openIssue("c2"));
    answerChatGet();
    EXPECT_EQ(requests("/chat/enter"), 0) << "it would join its room into the other's list";

    const Json other = {{"external_id", "other@rooms.test"},
                        {"participants_eligible", {{"agent:9", Json::object()}}}};
    answer("/chat/get/c2", other);
    screen->chatRefreshEligibleParticipants(*support->chat);
    disappear();
    const auto second = screen;
    open();
    answerChatGet();
    answer("/chat/get/c2", other);
    second->connect();
    EXPECT_TRUE(support->chat->isParticipant("agent:1"));
    EXPECT_FALSE(support->chat->isParticipant("agent:9"));
    EXPECT_EQ(support->chat->muc, "room@rooms.test");
}

TEST_F(ChatSession, TimeOutOffersAnotherAttempt) {
    open();
    answerChatGet();
    EXPECT_EQ(stream().options.connectTimeout, 30s);
    fakes.queue->advance(30s);
    ASSERT_EQ(fakes.presenter->alerts.size(), 1);
    EXPECT_EQ(fakes.presenter->alerts.back().title, "Host");
    EXPECT_THAT(fakes.presenter->alerts.back().message,
                testing::StartsWith("Timed out while attempting to connect to the chat server."));
    stream().end(XmppLoss::timedOut);
    fakes.presenter->choose("Retry");
    EXPECT_EQ(fakes.progress->shown.back(), "status Connecting to chat server");
    EXPECT_GE(fakes.xmpp->streams.size(), 2);
    join();
    EXPECT_TRUE(support->chat->isRoomJoined());
    fakes.queue->advance(60s);
    EXPECT_THAT(fakes.presenter->alerts, IsEmpty());

    screen->chatDidFailToConnect(*support->chat, XmppStreamEnd{XmppLoss::refused, "", "no"});
    EXPECT_THAT(fakes.presenter->alerts, IsEmpty()) << "it is connected after all";
    support->chat->leaveRoom();
    support->chat->connect();
    fakes.queue->advance(30s);
    EXPECT_EQ(fakes.presenter->alerts.back().message, "Unable to join chat room.");
}

TEST_F(ChatSession, OpeningGoesOnUnseenOnceTheScreenIsLeft) {
    open();
    disappear();
    const auto shown = [this] { return fakes.progress->shown.size(); };
    answerChatGet();
    const auto before = shown();
    stream().authenticate();
    EXPECT_EQ(shown(), before) << "what shows now belongs to another screen";
    appear();
    join();
    EXPECT_TRUE(support->chat->isRoomJoined());
    stream().end(XmppLoss::lost);
    screen->connect();
    EXPECT_EQ(fakes.progress->shown.back(), "status Connecting to chat server");
}

TEST_F(ChatSession, GivesTheThemesColoursToTheEngine) {
    fakes.traits->systemColors["labelColor"] = colorFromRGB(0xEEEEEE);
    fakes.traits->systemColors["systemBackgroundColor"] = colorFromRGB(0x111111);
    support->appearance->configureDefaultColors();
    openAndJoin();
    receive(
        Json{{"secret", QuorrandChatMessage::MD5("plain")}, {"actions", {{{"lbl", "Go"}}}}}.dump());
    const auto button = screen->lastMessage()->chatActionButtons.front();
    const auto& look = support->chat->appearance;
    EXPECT_EQ(look.labelColor, colorFromRGB(0xEEEEEE)) << "the theme has no colour for text";
    EXPECT_EQ(look.backgroundColor, colorFromRGB(0x111111));
    EXPECT_EQ(look.linkAndButtonTintColor, support->appearance->linkAndButtonTintColor);
    EXPECT_TRUE(support->chat->hideTextEntryAccessoryView);
    disappear();
    support->appearance->configureWithSettings(
        {{"colors",
          {{"textColor", "#010203"}, {"chatNavBarColor", "#040506"}, {"buttonColor", "#070809"}}}});
    appear();
    EXPECT_EQ(button->title().color, colorFromRGB(0x070809)) << "it can be pressed still";
    EXPECT_EQ(look.labelColor, colorFromRGB(0x010203));
    EXPECT_EQ(look.timeStampColor, colorFromRGB(0x010203));
    EXPECT_EQ(look.chatNavigationBarBackgroundColor, colorFromRGB(0x040506));
}

TEST_F(ChatSession, AnswersThatComeTooLateDoNothing) {
    open();
    screen->cancel();
    answer("/issues/55", {{"message", "?"}}, 500);
    answerChatGet();
    EXPECT_THAT(fakes.xmpp->streams, IsEmpty()) << "the chat was ended before it was open";

    open();
    const auto inFlight = fakes.http->sent.size();
    screen->resolveIssueIfPossible();
    screen->resolveIssue();
    screen->cancelIssue();
    screen->videoChatGet("c1");
    screen->chatEnter("c1");
    screen->chatExit("c1");
    screen->startReloadTimer();
    screen->refreshLists();
    screen.reset();
    support.reset();
    for (auto request = inFlight - 1; request < fakes.http->sent.size(); ++request)
        fakes.http->answer(request, request % 2 ? 200 : 500, {{"success", true}});
    fakes.queue->advance(10s);
    EXPECT_EQ(fakes.progress->shown.back(), "dismiss");
}

}  // namespace
}  // namespace supportsdk::test
