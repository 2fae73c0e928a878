#include <gmock/gmock.h>

#include <algorithm>

#include "tests/e2e/Road.h"

// What follows a conversation: the rating, the history with its switches, and a call-back.

namespace supportsdk::test {
namespace {

using testing::ElementsAre;

class AfterChat : public Road {
 protected:
    /// A conversation that its person ends. Returns the issue's id.
    std::string chatToTheEnd() {
        load();
        const auto issue = openChat();
        say("It works now, thank you.");
        press("End Chat");
        host->await("left", {{"class", kChat}});
        return issue;
    }

    static std::vector<bool> starsOf(const Json& screen) {
        std::vector<bool> stars;
        for (const auto& star : screen.value("stars", Json::array()))
            stars.push_back(star["selected"]);
        return stars;
    }

    /// How many stars are lit after a tap on this one; they are lit from the first on.
    std::ptrdiff_t tapStar(const char* label) {
        press(label);
        const auto stars = starsOf(host->await("changed", {{"class", kRating}}));
        EXPECT_TRUE(std::is_partitioned(stars.begin(), stars.end(), [](bool lit) { return lit; }));
        return std::count(stars.begin(), stars.end(), true);
    }

    /// The list as it is once the row with this label has these members, at least.
    Json historyWith(const std::string& label, const Json& members) {
        return openList("My cases", kHistory, [&](const Json& rows) {
            const auto row = indexOf(rows, label);
            return row < rows.size() &&
                   std::all_of(members.items().begin(), members.items().end(),
                               [&](const auto& member) {
                                   return rows[row].value(member.key(), "") == member.value();
                               });
        });
    }

    Json issueOf(const std::string& id) { return service->get("/issues/" + id)->at("results")[0]; }

    Json shown(const char* screen) {
        host->send({{"do", "show"}});
        return awaitScreen(screen);
    }
};

TEST_F(AfterChat, ARatingFollowsAndTheCaseCanBeReadAgain) {
    const auto id = chatToTheEnd();
    const auto dialog = awaitScreen(kRating);
    EXPECT_EQ(dialog["heading"], "How was your experience?");
    EXPECT_EQ(dialog["fields"][0]["placeholder"], "Anything to add?");
    EXPECT_THAT(starsOf(dialog), ElementsAre(false, false, false, false, false));
    for (const auto& [star, lit] :
         {std::pair{"3", 3}, {"3", 3}, {"5", 5}, {"5", 4}, {"5", 5}, {"1", 1}, {"4", 4}})
        EXPECT_EQ(tapStar(star), lit) << star;
    host->send({{"do", "type"}, {"text", "Quick \"and\" kind\nÄ"}});
    press("Submit");
    host->await("left", {{"class", kRating}});
    host->await("progress", {{"text", "Rating your support experience"}});
    ASSERT_TRUE(service->await("issue", {{"issue_id", id}, {"change", "rated"}}));
    EXPECT_EQ(issueOf(id)["rating"], 4);
    EXPECT_EQ(issueOf(id)["rating_notes"], "Quick \"and\" kind\nÄ");

    const auto label = "Chat ID: SC-" + id;
    const auto rows = historyWith(label, {{"status", "Status: Resolved"}, {"rating", "Rating: 4"}});
    EXPECT_EQ(indexOf(rows, label), 0U) << "the latest comes first";
    select(0);
    const auto chat = awaitScreen(kChat);
    EXPECT_EQ(chat["title"], "Site History");
    EXPECT_EQ(chat["readOnly"], true);
    EXPECT_FALSE(chat.contains("entry"));
    awaitLine("It works now, thank you.", true);
    const auto joined = service->get("/events?kind=joined")->at("results").size();
    host->send({{"do", "send"}});
    host->await("refused");
    back(kChat);
    EXPECT_EQ(service->get("/events?kind=joined")->at("results").size(), joined);
}

TEST_F(AfterChat, ACaseThatWasNeverRatedAsksForItFromTheHistory) {
    load();
    const auto label = "Chat ID: SC-4002";
    auto row = indexOf(historyWith(label, {{"status", "Status: Resolved"}}), label);
    select(row);
    awaitScreen(kRating);
    press("Cancel");
    host->await("left", {{"class", kRating}});
    select(row);
    awaitScreen(kRating);
    tapStar("5");
    press("Submit");
    ASSERT_TRUE(service->await("issue", {{"issue_id", "4002"}, {"change", "rated"}}));
    host->await("dismiss");
    back(kHistory);

    row = indexOf(historyWith(label, {{"rating", "Rating: 5"}}), label);
    select(row);
    EXPECT_EQ(awaitScreen(kChat)["readOnly"], true);
    EXPECT_EQ(
        service->get("/events?kind=request&path=/sdk/v1/issues/rate/4002")->at("results").size(),
        1U);
}

TEST_F(AfterChat, TheSwitchesOfTheHistoryLast) {
    const std::vector<std::string> oldestFirst = {"Chat ID: SC-4003", "Chat ID: SC-4007",
                                                  "Chat ID: SC-4006"};
    load();
    EXPECT_EQ(openList("My cases", kHistory).size(), 5U);
    press("...");
    const auto menu = awaitScreen(kSwitches)["fields"];
    EXPECT_EQ(menu, Json::parse(R"([{"label":"Sort Descending","value":true},
        {"label":"Open","value":true},{"label":"Resolved","value":true},
        {"label":"Closed","value":true}])"));
    for (const auto* field : {"Resolved", "Sort Descending"}) {
        host->send({{"do", "set"}, {"field", field}, {"value", false}});
        host->await("changed", {{"class", kSwitches}});
    }
    back(kSwitches);
    EXPECT_EQ(labelsOf(rowsOf(shown(kHistory))), oldestFirst);

    host->send({{"do", "quit"}});
    EXPECT_EQ(host->waitForEnd(), 0);
    host = startHost();
    load();
    EXPECT_EQ(labelsOf(openList("My cases", kHistory)), oldestFirst);
}

TEST_F(AfterChat, ACallBackIsAskedForWithTheServicesNumberOrWithout) {
    load();
    const auto known = openScreen("Call me back", kCallMe);
    EXPECT_EQ(known["fields"][0]["value"], "+1 555 0101") << "what the service knows";
    press("Submit");
    host->await("refused");
    for (const auto& [number, isGood] :
         {std::pair{"(212) 155-0147", false}, {"+1 212-955.0147", true}}) {
        host->send({{"do", "type"}, {"text", number}});
        const auto screen = host->await("changed", {{"class", kCallMe}});
        EXPECT_EQ(screen["buttons"][1]["enabled"], isGood) << number;
        EXPECT_EQ(screen["fields"][0]["value"], number);
    }
    host->send({{"do", "type"}, {"field", "Description"}, {"text", "It hums."}});
    press("Submit");
    host->await("progress", {{"text", "Requesting callback"}});
    host->await("info", {{"text", "Thank you. We will call within the hour."}});
    EXPECT_EQ(host->await("dismiss")["delay"], 3000);
    host->send({{"do", "defaults"}});
    const auto id = host->await("defaults")["values"].value("supportSDKCurrentIssueId", "");
    EXPECT_EQ(issueOf(id)["callback_number"], "+1 212-955.0147");
    EXPECT_EQ(issueOf(id)["details"], "It hums.");

    for (const auto& number : {Json(), Json("2129550147")}) {
        const auto answer = Json{{"callback_number", number}}.dump();
        ASSERT_TRUE(service->post("/faults", {{"kind", "answer"},
                                              {"path", "/sdk/v1/customers/getCallbackNumber/*"},
                                              {"content", answer}}));
        const auto screen = openScreen("Call me back", kCallMe);
        EXPECT_EQ(screen["fields"][0]["value"], number.is_null() ? "" : number);
        EXPECT_EQ(screen["buttons"][1]["enabled"], !number.is_null());
        if (number.is_null()) back(kCallMe);
    }
    press("Submit");
    host->await("info");
    host->send({{"do", "defaults"}});
    const auto next = host->await("defaults")["values"].value("supportSDKCurrentIssueId", "");
    EXPECT_EQ(issueOf(next)["details"], "");
    EXPECT_EQ(issueOf(next)["callback_number"], "2129550147");
}

}  // namespace
}  // namespace supportsdk::test
