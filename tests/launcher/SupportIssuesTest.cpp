#include "supportsdk/core/QDIssue.h"
#include "tests/launcher/ButtonFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;

class SupportIssuesTest : public ButtonTest {
 protected:
    SupportIssuesTest() { loadWith({}); }

    RestCallback note(const std::string& what) {
        return [this, what](const Json& response) {
            outcomes.push_back(what + " " + response.value("message", "-"));
        };
    }

    std::shared_ptr<Support>& support = button->support;
    std::vector<std::string> outcomes;
};

TEST_F(SupportIssuesTest, CreatesAnIssueForTheCustomerOnly) {
    support->createIssueWithCallbackNumber("+1 555", std::nullopt, note("yes"), note("no"));
    EXPECT_EQ(bodyOf("/issues/create"), Json({{"callbackNumber", "+1 555"},
                                              {"issues",
                                               {{"members_id", "m"},
                                                {"members_users_id", "u"},
                                                {"members_locations_id", "l"},
                                                {"user_agent", support->clientAppIdentifier()}}}}));
    // Creation is strict, and 201 is not 200.
    fakes.http->answerTo("/issues/create", 201, {{"message", "made"}});
    requests();
    support->identity.membersLocationsId = {};
    support->createIssueWithCallbackNumber(std::nullopt, "It hums", note("yes"), note("no"));
    EXPECT_EQ(outcomes.size(), 1U) << "the answer came inside the call";
    fakes.queue->drain();
    EXPECT_THAT(outcomes, ElementsAre("no made", "no The customer is not known."));
    EXPECT_THAT(requests(), ElementsAre());

    for (const auto& choose : {Support::strictly, Support::leniently}) {
        choose(note("yes"), note("no"))(Json::array({1}));
    }
    EXPECT_EQ(outcomes.size(), 2U) << "what is no dictionary is no answer";
}

TEST_F(SupportIssuesTest, SendsUserDataOnlyWhenTheUserIsKnown) {
    const auto send = [this](const std::string& id) {
        support->rateIssue(id, 4, "Good", note("rated"), note("no"));
        support->resolveIssue(id, note("resolved"), note("no"));
        support->cancelIssue(id, note("cancelled"), note("no"));
    };
    send("5");
    EXPECT_EQ(bodyOf("/resolve/5"), Json({{"resolution", 1}}));
    EXPECT_EQ(bodyOf("/cancel/5"), Json({{"members_users_id", "u"}}));
    support->identity.membersUsersId = {};
    send("6");
    for (const auto* part : {"/rate/6", "/resolve/6", "/cancel/6"}) {
        EXPECT_EQ(bodyOf(part), Json::object()) << part;
        fakes.http->answerTo(part, 200, Json::object());
    }
    EXPECT_THAT(outcomes, ElementsAre("rated -", "resolved -", "cancelled -"));
}

TEST_F(SupportIssuesTest, NamesAnIssueRateableOnlyOnceItIsFinished) {
    const std::vector<std::tuple<int, Json, std::optional<std::string>>> cases = {
        {200, {{{"id", "5"}, {"status", 7}}}, "5"},
        {200, {{{"id", "5"}, {"status", 6}}}, std::nullopt},
        {200, Json::array({Json()}), std::nullopt},
        {500, Json::array(), std::nullopt}};
    for (const auto& [httpStatus, results, rateable] : cases) {
        support->rateableIssueId = "old";
        support->refreshIssue("5");
        EXPECT_EQ(support->rateableIssueId, std::nullopt);
        fakes.http->answerTo("/issues/5", httpStatus, {{"results", results}});
        EXPECT_EQ(support->rateableIssueId, rateable) << results;
    }
    EXPECT_EQ(fakes.log->lines.back(), "failure");
}

TEST_F(SupportIssuesTest, KeepsTheCurrentIssueAcrossLaunches) {
    EXPECT_FALSE(support->loadCurrentIssue());
    support->saveCurrentIssue(std::make_shared<QDIssue>(Json{{"id", "5"}, {"xmpp_data", "QUJD"}}));
    support->currentIssueId.reset();
    EXPECT_TRUE(support->loadCurrentIssue());
    EXPECT_EQ(support->currentIssueId, "5");
    const int flushes = fakes.defaults->fake().flushes;
    support->saveCurrentIssue(nullptr);
    EXPECT_EQ(fakes.defaults->fake().flushes, flushes + 1);
    EXPECT_EQ(support->currentIssueId, "5");

    support->clearCurrentIssue();
    EXPECT_EQ(support->xmppdata, "QUJD") << "credentials stay until the next load";
    EXPECT_FALSE(support->loadCurrentIssue() || support->currentIssueId || support->xmppdata);
}

}  // namespace
}  // namespace supportsdk::test
