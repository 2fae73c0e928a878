#include "tests/launcher/ButtonFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SupportButtonLoadTest : public ButtonTest {};

TEST_F(SupportButtonLoadTest, ReportsSettingsThenResolvesTheCustomer) {
    EventLog events;
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
    EXPECT_THAT(events.names, ElementsAre("com.goquorrand.event.sdk.started"));
    EXPECT_TRUE(button->isSettingsRetrieved);

    EXPECT_EQ(bodyOf("/resolve"), Json({{"ids", {{"members_users_email", "a@example.test"}}}}));
    fakes.http->answerTo("/resolve", 200, Json{{"members_id", "1"}});
    EXPECT_THAT(told(), ElementsAre("customer"));
}

TEST_F(SupportButtonLoadTest, WaitsForJourneysBeforeItReportsSettings) {
    loadWith({{"journeys", {{"enabled", true}}}});
    EXPECT_THAT(told(), IsEmpty());
    fakes.http->answerTo("/journeys/data", 500, Json::object());
    EXPECT_THAT(told(), ElementsAre("settings"));
}

TEST_F(SupportButtonLoadTest, ReportsThatSettingsAreNotToBeHad) {
    load();
    fakes.http->answerRaw(0, {0, {}, {}, "No route"});
    EXPECT_THAT(told(), ElementsAre("no settings: Unable to retrieve settings | No route"));
    EXPECT_FALSE(button->isSettingsRetrieved);
}

TEST_F(SupportButtonLoadTest, TellsTheResultsOfTheThreeLoadsApart) {
    fakes.mainBundle->infos["CFBundleIdentifier"] = "test.host";
    fakes.mainBundle->files["support.json"] = configuration;
    EXPECT_FALSE(button->loadConfigurationFile("support", Json{{"members_id", "1"}}));
    EXPECT_THAT(requests(), ElementsAre("GET /app/get"));
    EXPECT_EQ(button->customerInfo, Json({{"members_id", "1"}}));

    EXPECT_TRUE(button->loadConfigurationJSON(configuration, "{\"members_id\":"));
    EXPECT_EQ(button->customerInfo, Json({{"members_id", "1"}}))
        << "what does not parse is not set";
    EXPECT_TRUE(button->loadConfigurationJSON(configuration, Json()));
    EXPECT_EQ(button->customerInfo, std::nullopt);
    EXPECT_THAT(requests(), ElementsAre("GET /app/get", "GET /app/get"));

    const auto former = button->support;
    for (const auto* odd : {"", "{", "[]", "7"}) {
        EXPECT_TRUE(button->loadConfigurationJSON(odd, Json())) << odd;
    }
    EXPECT_FALSE(button->loadConfigurationJSON("{\"a\":\"\xFF\"}", Json()));
    EXPECT_EQ(button->support, former);
    EXPECT_THAT(requests(), IsEmpty());
}

TEST_F(SupportButtonLoadTest, ResolvesTheCustomerThatTheHostNames) {
    loadWith({});
    told();
    requests();
    button->getCustomerWithJSON("{");
    button->getCustomerWithJSON("[1]");
    button->getCustomerWithInformation(Json::array({1}));
    EXPECT_THAT(told(), IsEmpty());
    button->getCustomerWithInformation(Json::object());
    EXPECT_THAT(told(), ElementsAre("failed: Unable to retrieve customer | "
                                    "Customer information is missing."));
    EXPECT_THAT(requests(), IsEmpty());

    button->getCustomerWithJSON(R"({"members_id":"9"})");
    fakes.http->answerRaw(fakes.http->sent.size() - 1, {404, {}, {}, "not found"});
    EXPECT_THAT(told(),
                ElementsAre("no customer: Unable to retrieve customer information | not found"));
    button->getCustomerWithJSON("{");  // the former one again
    EXPECT_THAT(requests(), ElementsAre("POST /customers/resolve", "POST /customers/resolve"));

    button->memberID = button->memberUserID = "1";
    button->validateCustomerInformation();
    EXPECT_THAT(told(), ElementsAre("failed: Unable to retrieve customer | "
                                    "Unable to retrieve customer information."));
    button->memberLocationID = "1";
    button->validateCustomerInformation();
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(SupportButtonLoadTest, ShowsUnreadLinesUntilTheUserTurnsToTheKit) {
    const auto post = [](std::int64_t count) {
        NotificationCenter::shared().post("com.goquorrand.chat.unreadcountupdated", count);
    };
    loadWith({});
    told();
    post(0);
    post(3);
    post(0);
    post(12);
    EXPECT_THAT(told(), ElementsAre("badge 3", "badge 12"));
    button->actionWeb();
    button->actionWeb();
    EXPECT_THAT(told(), ElementsAre("no badge"));
    post(1);
    button->willMoveToSuperview();
    EXPECT_THAT(told(), ElementsAre("badge 1", "no badge"));
    NotificationCenter::shared().post("com.goquorrand.chat.unreadcountupdated", "7");
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(SupportButtonLoadTest, LeavesOnRequestFromTheHost) {
    EventLog events;
    button->sendRequest("com.goquorrand.request.chat.exit");
    EXPECT_THAT(told(), IsEmpty());
    button->sendRequest("com.goquorrand.request.supportsdk.exit");
    EXPECT_THAT(told(), ElementsAre("exit"));
    EXPECT_THAT(events.names, testing::Contains("com.goquorrand.event.sdk.ended"));
}

}  // namespace
}  // namespace supportsdk::test
