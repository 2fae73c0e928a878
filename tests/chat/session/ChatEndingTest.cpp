#include "tests/chat/session/ChatSessionFixture.h"

namespace supportsdk::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class ChatEnding : public ChatSession {
 public:
    /// "End Chat", with the issue found in this state.
    void endChat(const Json& status) {
        screen->rightBarButtons.front().action();
        EXPECT_EQ(fakes.progress->shown.back(), "status Checking issue status");
        answer("/issues/55", {{"results", {{{"id", "55"}, {"status", status}}}}});
    }
    [[nodiscard]] bool hasLeft() {
        fakes.queue->drain();
        return !fakes.presenter->log.empty();
    }
};

TEST_F(ChatEnding, ResolvedIssueIsForgottenAndMayBeRated) {
    openAndJoin();
    support->saveCurrentIssue(screen->issue);
    endChat(6);
    EXPECT_EQ(fakes.progress->shown.back(), "status Resolving issue");
    answer("/issues/resolve/55", {{"success", true}});
    EXPECT_EQ(support->rateableIssueId, "55");
    EXPECT_EQ(support->loadCurrentIssue(), nullptr);
    EXPECT_EQ(screen->issue, nullptr);
    EXPECT_TRUE(wasSent("type=\"unavailable\""));
    EXPECT_FALSE(stream().disconnectRequested) << "the stream waits for the next chat";
    EXPECT_TRUE(hasLeft());
    EXPECT_THAT(fakes.presenter->log, ElementsAre("pop "));
    disappear();
    EXPECT_FALSE(support->chat->postUnreadMessageCount);
    EXPECT_THAT(companion->log, ElementsAre("stop", "rating"));
    EXPECT_THAT(events,
                ElementsAre(event::chatStarted, event::chatIssueResolved, event::chatEnded));
}

TEST_F(ChatEnding, TheRatingWaitsUntilThePersonIsBackFromAnArticleAndLeaves) {
    openAndJoin();
    support->rateableIssueId = "55";
    fakes.presenter->cover = [this] { disappear(); };
    screen->showKBViewController();
    appear();
    screen->handleButtonAction("http://a.test/", {}, nullptr);
    EXPECT_THAT(companion->log, IsEmpty());
    appear();
    // Beside the chat, which stays on view, it is no way back.
    fakes.presenter->cover = {};
    screen->showKBViewController();
    disappear();
    EXPECT_THAT(companion->log, ElementsAre("rating"));
}

TEST_F(ChatEnding, APresentedScreenIsDismissedAndAnUnreachableIssueIsJustLeft) {
    open();
    const auto below = std::make_shared<ScreenController>();
    screen->presentingController = below;
    screen->cancel();
    answer("/issues/55", Json::object(), 404);
    EXPECT_TRUE(hasLeft());
    EXPECT_THAT(fakes.presenter->log, ElementsAre("dismiss "));
    EXPECT_EQ(support->rateableIssueId, std::nullopt);
}

TEST_F(ChatEnding, StrangeAnswersLeadNowhereAndPressedTwiceItLeavesOnce) {
    openAndJoin();
    for (const auto& results : {Json(), Json::array(), Json{{"id", "55"}}, Json("x")}) {
        screen->cancel();
        answer("/issues/55", {{"results", results}});
    }
    EXPECT_EQ(requests("/issues/resolve"), 0);
    endChat(6);
    answer("/issues/resolve/55", {{"success", false}});
    EXPECT_EQ(fakes.progress->shown.back(), "status Cancelling issue");
    EXPECT_FALSE(hasLeft());
    screen->cancel();
    screen->cancel();
    for (int i = 0; i < 2; ++i) answer("/issues/55", {{"results", {{{"status", 8}}}}});
    EXPECT_TRUE(hasLeft());
    EXPECT_THAT(fakes.presenter->log, ElementsAre("pop "));
    EXPECT_EQ(std::count(events.begin(), events.end(), event::chatIssueResolved), 1);
}

TEST_F(ChatEnding, BackLeavesTheIssueAlone) {
    openAndJoin();
    screen->leftBarButtons.front().action();
    disappear();
    EXPECT_THAT(fakes.presenter->log, ElementsAre("dismiss "));
    EXPECT_TRUE(screen->issue);
    EXPECT_TRUE(support->chat->isRoomJoined());
    EXPECT_THAT(companion->log, IsEmpty());
}

TEST_F(ChatEnding, HostMayAskForIt) {
    openAndJoin();
    EventManager::notify(request::chatExit);
    EXPECT_THAT(fakes.presenter->log, ElementsAre("pop "));
    EXPECT_THAT(fakes.log->lines, Contains("Chat exit requested"));
    screen->testCancel();
    EXPECT_EQ(requests("/issues/55"), 1);
    EXPECT_THAT(fakes.log->lines, Contains("Chat exit resolve requested"));
    disappear();
    EventManager::notify(request::chatExitResolveIssue);
    EXPECT_EQ(requests("/issues/55"), 1) << "a screen out of view hears nothing";
}

}  // namespace
}  // namespace supportsdk::test
