#include "tests/launcher/ButtonFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SupportButtonLoadTest : public ButtonTest {};

TEST_F(SupportButtonLoadTest, StartsTheChannelsAndResolvesTheCustomerOnceSettingsAreIn) {
    load({{"members_users_email", "a@example.test"}});
    EXPECT_THAT(requests(), ElementsAre("GET /app/get"));
    const Json on = {{"enabled", true}};
    fakes.http->answerTo("/app/get", 200,
                         settings({{"kb", on},
                                   {"history", on},
                                   {"forms", {{"enabled", true}, {"supportForms", {"7"}}}}}));
    EXPECT_THAT(requests(), ElementsAre("GET /kb/get", "GET /forms/get/?id=7",
                                        "GET /issues/history?members_locations_id=l",
                                        "POST /customers/resolve"));
    EXPECT_THAT(told(), ElementsAre("settings"));
    EXPECT_THAT(events(), ElementsAre("com.goquorrand.event.sdk.started"));
    EXPECT_TRUE(button->isSettingsRetrieved);

    EXPECT_EQ(bodyOf("/resolve"), Json({{"ids", {{"members_users_email", "a@example.test"}}}}));
    fakes.http->answerTo("/resolve", 200, Json{{"members_id", "1"}});
    EXPECT_THAT(told(), ElementsAre("customer"));
}

TEST_F(SupportButtonLoadTest, ReportsSettingsAfterJourneysOrNotAtAll) {
    load();
    fakes.http->answerTo("/app/get", 200, settings({{"journeys", {{"enabled", true}}}}));
    EXPECT_THAT(told(), IsEmpty());
    fakes.http->answerTo("/journeys/data", 500, Json::object(),
                         {{"X-Quorrand-DownloadSessionToken", "secret"}});
    EXPECT_THAT(fakes.log->lines, testing::Not(testing::Contains(testing::HasSubstr("secret"))));
    EXPECT_THAT(told(), ElementsAre("settings"));
    load();
    fakes.http->answerRaw(fakes.http->sent.size() - 1, {0, {}, {}, "No route"});
    EXPECT_THAT(told(), ElementsAre("no settings: Unable to retrieve settings | No route"));
}

TEST_F(SupportButtonLoadTest, TellsTheResultsOfTheThreeLoadsApart) {
    fakes.mainBundle->infos["CFBundleIdentifier"] = "test.host";
    fakes.mainBundle->files["support.json"] = configuration;
    button->isSettingsRetrieved = true;
    EXPECT_FALSE(button->loadConfigurationFile("support", Json{{"members_id", "1"}}));
    EXPECT_FALSE(button->isSettingsRetrieved);
    EXPECT_TRUE(button->loadConfigurationJSON(configuration, "{\"members_id\":"));
    EXPECT_EQ(button->customerInfo, Json({{"members_id", "1"}})) << "kept when nothing parses";
    EXPECT_TRUE(button->loadConfigurationJSON(configuration, Json()));
    EXPECT_EQ(button->customerInfo, std::nullopt);
    EXPECT_THAT(requests(), ElementsAre("GET /app/get", "GET /app/get", "GET /app/get"));

    const auto former = button->support;
    for (const auto* odd : {"", "{", "[]", "7"}) {
        EXPECT_TRUE(button->loadConfigurationJSON(odd, Json())) << odd;
    }
    EXPECT_FALSE(button->loadConfigurationJSON("{\"a\":\"\xFF\"}", Json()));
    EXPECT_EQ(button->support, former);
}

TEST_F(SupportButtonLoadTest, ResolvesTheCustomerThatTheHostNames) {
    loadWith({});
    button->getCustomerWithJSON("{");
    button->getCustomerWithJSON("[1]");
    button->getCustomerWithInformation(Json::object());
    EXPECT_THAT(requests(), IsEmpty());
    button->getCustomerWithJSON(R"({"members_id":"9"})");
    fakes.http->answerRaw(fakes.http->sent.size() - 1, {404, {}, {}, "not found"});
    button->getCustomerWithJSON("{");  // the former one again
    EXPECT_THAT(requests(), ElementsAre("POST /customers/resolve", "POST /customers/resolve"));
    button->memberID = button->memberUserID = "1";
    button->validateCustomerInformation();
    button->memberLocationID = "1";
    button->validateCustomerInformation();
    EXPECT_THAT(
        told(),
        ElementsAre("failed: Unable to retrieve customer | Customer information is missing.",
                    "no customer: Unable to retrieve customer information | not found",
                    "failed: Unable to retrieve customer | "
                    "Unable to retrieve customer information."));
}

TEST_F(SupportButtonLoadTest, ShowsUnreadLinesUntilTheUserTurnsToTheKit) {
    const auto post = [](const NotificationObject& count) {
        NotificationCenter::shared().post("com.goquorrand.chat.unreadcountupdated", count);
    };
    loadWith({});
    for (const std::int64_t count : {0, 3, 0, 12}) post(count);
    EXPECT_THAT(told(), ElementsAre("badge 3", "badge 12"));
    button->actionWeb();
    button->actionWeb();
    post(1);
    button->willMoveToSuperview();
    EXPECT_THAT(told(), ElementsAre("no badge", "badge 1", "no badge"));
    EXPECT_EQ(badgeGeometry(48).x + badgeGeometry(48).cornerRadius, 40);
    EXPECT_EQ(badgeGeometry(-1).side, 0);
}

}  // namespace
}  // namespace supportsdk::test
