#include <algorithm>

#include "tests/e2e/Road.h"

// What follows a conversation: the rating, the history with its switches, and a call-back.

namespace supportsdk::test {
namespace {

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

    std::string currentIssue() {
        host->send({{"do", "defaults"}});
        return host->await("defaults")["values"].value("supportSDKCurrentIssueId", "");
    }
};

TEST_F(AfterChat, ARatingFollowsAndTheCaseCanBeReadAgain) {
    const auto id = chatToTheEnd();
    const auto dialog = awaitScreen(kRating);
    EXPECT_EQ(dialog["heading"], "How was your experience?");
    press("4");
    const auto stars = host->await("changed", {{"class", kRating}})["stars"];
    EXPECT_TRUE(stars[3]["selected"] == true && stars[4]["selected"] == false);
    host->send({{"do", "type"}, {"text", "Quick \"and\" kind\nÄ"}});
    press("Submit");
    host->await("left", {{"class", kRating}});
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
    const auto row = indexOf(historyWith(label, {{"status", "Status: Resolved"}}), label);
    select(row);
    awaitScreen(kRating);
    press("5");
    press("Submit");
    ASSERT_TRUE(service->await("issue", {{"issue_id", "4002"}, {"change", "rated"}}));
    host->await("dismiss");
    back(kHistory);
    historyWith(label, {{"rating", "Rating: 5"}});
}

TEST_F(AfterChat, TheSwitchesOfTheHistoryLast) {
    const std::vector<std::string> oldestFirst = {"Chat ID: SC-4003", "Chat ID: SC-4007",
                                                  "Chat ID: SC-4006"};
    load();
    EXPECT_EQ(openList("My cases", kHistory).size(), 5U);
    press("...");
    EXPECT_EQ(awaitScreen(kSwitches)["fields"].size(), 4U);
    for (const auto* field : {"Resolved", "Sort Descending"}) {
        host->send({{"do", "set"}, {"field", field}, {"value", false}});
        host->await("changed", {{"class", kSwitches}});
    }
    back(kSwitches);
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
    host->send({{"do", "type"}, {"text", "+1 212-955.0147"}});
    EXPECT_EQ(host->await("changed", {{"class", kCallMe}})["buttons"][1]["enabled"], true);
    host->send({{"do", "type"}, {"field", "Description"}, {"text", "It hums."}});
    press("Submit");
    host->await("info", {{"text", "Thank you. We will call within the hour."}});
    EXPECT_EQ(host->await("dismiss")["delay"], 3000);
    const auto issue = issueOf(currentIssue());
    EXPECT_EQ(issue["callback_number"], "+1 212-955.0147");
    EXPECT_EQ(issue["details"], "It hums.");

    ASSERT_TRUE(service->post("/faults", {{"kind", "answer"},
                                          {"path", "/sdk/v1/customers/getCallbackNumber/*"},
                                          {"content", R"({"callback_number":null})"}}));
    const auto unknown = openScreen("Call me back", kCallMe);
    EXPECT_EQ(unknown["fields"][0]["value"], "");
    EXPECT_EQ(unknown["buttons"][1]["enabled"], false);
}

}  // namespace
}  // namespace supportsdk::test
