#include <csignal>

#include "tests/e2e/Road.h"

namespace supportsdk::test {
namespace {

class Conversation : public Road {};

TEST_F(Conversation, GoesFromTheTapToTheEndOfTheCase) {
    load();
    const auto issue = openChat();

    say("Hello, the screen stays dark.");
    service->say(issue, "Is it plugged in?",
                 {{"kind", "plain"},
                  {"actions", {{{"key", "y"}, {"lbl", "Yes"}, {"uri", "qd-msg://Yes, it is"}}}}});
    const auto question = awaitLine("Is it plugged in?", false);
    EXPECT_EQ(question["name"], "Robin Alder");
    EXPECT_EQ(question["buttons"][0]["label"], "Yes");

    host->send({{"do", "press"}, {"label", "Yes"}});
    awaitLine("Yes, it is", true);
    host->send({{"do", "press"}, {"label", "Yes"}});  // a newer line has frozen it
    host->await("refused");

    ASSERT_TRUE(service->post("/resolve", {{"issue", issue}}));
    host->send({{"do", "press"}, {"label", "End Chat"}});
    host->await("event", {{"name", "com.goquorrand.event.chat.issue_resolved"}});
    host->await("left", {{"class", "ChatViewController"}});
    host->send({{"do", "defaults"}});
    EXPECT_FALSE(host->await("defaults")["values"].contains("supportSDKCurrentIssue"));
    host->signal(SIGTERM);
    EXPECT_EQ(host->waitForEnd(), 0);
}

TEST_F(Conversation, GoesOnAfterANewStartWithItsLines) {
    load();
    const auto issue = openChat();
    say("I will be back.");
    host->send({{"do", "quit"}});
    EXPECT_EQ(host->waitForEnd(), 0);
    service->say(issue, "We wait.");

    host = startHost();
    load();
    chooseChat();
    awaitLine("We wait.", false);
    host->send({{"do", "show"}});
    awaitLine("I will be back.", true);

    host->send({{"do", "press"}, {"label", "End Chat"}});
    host->await("left");
    EXPECT_EQ(service->get("/issues/" + issue)->at("results")[0]["status"], 7)
        << "the person has resolved it";
}

TEST_F(Conversation, CountsLinesThatComeAfterGoingBack) {
    load();
    const auto issue = openChat();
    host->send({{"do", "press"}, {"label", "Back"}});
    host->await("left", {{"class", "ChatViewController"}});
    service->say(issue, "Are you there?");
    EXPECT_EQ(host->await("badge")["text"], "1");

    chooseChat();
    EXPECT_EQ(host->await("badge")["visible"], false);
    awaitLine("Are you there?", false);
}

}  // namespace
}  // namespace supportsdk::test
