#include "supportsdk/chat/ChatViewController.h"
#include "supportsdk/chat/QuorrandChat.h"
#include "tests/launcher/ButtonFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SupportButtonIssuesTest : public ButtonTest {
 protected:
    SupportButtonIssuesTest() {
        loadWith({{"chat", {{"enabled", true}}}});
        fakes.progress->shown.clear();
    }
    static Json results(const Json& issue) { return {{"results", {issue}}}; }
    void store(const Json& issue) {
        button->support->saveCurrentIssue(std::make_shared<QDIssue>(issue));
    }
    std::shared_ptr<QDIssue> shownIssue() { return button->chatViewController->issue; }
    Json storedIssue() {
        return fakes.defaults->fake().dictionary("supportSDKCurrentIssue").value_or(Json());
    }
};

TEST_F(SupportButtonIssuesTest, ResumesAnOpenIssueWithTheStoredCredentials) {
    store({{"id", "5"}, {"xmpp_data", "QUJD"}});
    button->actionChat();
    EXPECT_THAT(requests(), ElementsAre("GET /issues/5"));
    fakes.http->answerTo("/issues/5", 200, results({{"id", "5"}, {"status", 6}}));
    EXPECT_THAT(told(), ElementsAre("ChatViewController"));
    EXPECT_EQ(shownIssue()->xmpp_data, "QUJD");
    EXPECT_THAT(requests(), IsEmpty());

    button->actionChat();
    fakes.http->answerTo("/issues/5", 200, results({{"id", "5"}, {"xmpp_data", "RnJlc2g="}}));
    EXPECT_EQ(shownIssue()->xmpp_data, "RnJlc2g=");
}

TEST_F(SupportButtonIssuesTest, EndsQuietlyWhenTheServiceNamesNoIssue) {
    button->actionChat();
    fakes.http->answerTo("/create", 200, {{"results", Json::array()}});
    store({{"id", "5"}});
    button->actionChat();
    fakes.http->answerTo("/issues/5", 200, Json::object());
    EXPECT_THAT(told(), IsEmpty());
    EXPECT_EQ(fakes.progress->shown.back(), "dismiss");
}

TEST_F(SupportButtonIssuesTest, SaysWhyNoIssueCouldBeCreated) {
    button->actionChat();
    fakes.http->answerRaw(fakes.http->sent.size() - 1, {500, {}, {}, "Broken"});
    button->actionChat();
    fakes.http->answerTo("/create", 202, Json::object());
    EXPECT_THAT(told(), ElementsAre("failed: Unable to create issue: Broken | -",
                                    "failed: Unable to create issue | -"));

    button->support->features.supportUnavailable = true;
    button->support->features.supportUnavailableSummary = "Back at nine";
    requests();
    button->actionChat();
    EXPECT_THAT(told(), ElementsAre("failed: Support unavailable | Back at nine"));
    EXPECT_THAT(requests(), IsEmpty());
}

TEST_F(SupportButtonIssuesTest, ChatsOfflineOnAnIssueOfThisDevice) {
    button->support->chat->isOffline = true;
    fakes.clock->time += std::chrono::milliseconds{45};
    fakes.clock->offset = std::chrono::hours{2};
    button->actionChat();
    EXPECT_THAT(requests(), IsEmpty());
    EXPECT_EQ(shownIssue()->id, "T2026-01-31T14:00:30.045Z");
    EXPECT_EQ(shownIssue()->reference_num, shownIssue()->id);
    EXPECT_TRUE(shownIssue()->isTemporary);
    EXPECT_EQ(storedIssue(), Json());
    EXPECT_EQ(button->dateWithFormat("h 'o''clock' d.M.yy ''Q S SSSSS"),
              "2 o'clock 31.1.26 'Q 0 04500");
}

TEST_F(SupportButtonIssuesTest, ReplacesAnIssueThatIsFinishedOrMissingInTwoFlowsAtOnce) {
    store({{"id", "5"}});
    button->actionChat();
    button->actionChat();
    fakes.http->answerTo("/issues/5", 200, results({{"id", "5"}, {"status", 7}}));
    EXPECT_EQ(storedIssue(), Json());
    fakes.http->answerTo("/create", 200, results({{"id", "6"}}));
    fakes.http->answerTo("/issues/5", 404, Json::object());
    EXPECT_EQ(storedIssue()["id"], "6") << "until another one is there";
    fakes.http->answerTo("/create", 200, results({{"id", "7"}}));
    EXPECT_THAT(told(), ElementsAre("ChatViewController", "ChatViewController"));
    EXPECT_EQ(shownIssue()->id, "7");
    EXPECT_EQ(storedIssue()["id"], "7");
    EXPECT_EQ(fakes.progress->shown.back(), "dismiss");
}

TEST_F(SupportButtonIssuesTest, DropsWhatWasAskedUnderAFormerConfiguration) {
    const auto former = button->support;  // as an open screen keeps it
    store({{"id", "5"}});
    button->actionChat();
    former->clearCurrentIssue();
    button->actionChat();
    button->getCustomerWithInformation({{"a", "b"}});
    former->reloadWithJSON(Json{{"apiHost", "https://api.example.test"}});
    load();
    requests();
    fakes.progress->shown.clear();
    button->isSettingsRetrieved = false;

    fakes.http->answerTo("/issues/5", 200, results({{"id", "5"}}));
    fakes.http->answerTo("/create", 200, results({{"id", "6"}}));
    fakes.http->answerTo("/resolve", 200, {{"members_id", "m"}});
    fakes.http->answer(fakes.http->sent.size() - 2, 200, settings(Json::object()));
    EXPECT_THAT(told(), IsEmpty());
    EXPECT_THAT(requests(), IsEmpty());
    EXPECT_EQ(storedIssue(), Json());
    EXPECT_FALSE(button->isSettingsRetrieved);
    EXPECT_THAT(fakes.progress->shown, ElementsAre("dismiss", "dismiss"));
}

}  // namespace
}  // namespace supportsdk::test
