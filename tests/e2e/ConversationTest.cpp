#include <gmock/gmock.h>

#include <csignal>

#include "tests/e2e/Road.h"

namespace supportsdk::test {
namespace {

class Conversation : public Road {};

TEST_F(Conversation, GoesFromTheTapToTheEndOfTheCase) {
    load();
    const auto issue = openChat();

    say("Hello, the screen stays dark.");
    service->say(issue, "Hello (Smile) and (none)");
    EXPECT_EQ(awaitLine("Hello (Smile) and (none)", false)["emoticons"], Json({"(Smile)"}));
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

TEST_F(Conversation, SuggestsMentionsAndEmoticonsWhileThePersonTypes) {
    load();
    openChat();
    const auto suggestions = [this](const std::string& text) {
        host->send({{"do", "type"}, {"text", text}});
        return host->await("changed")["entry"].value("suggestions", Json::array());
    };
    EXPECT_EQ(suggestions("Hello @")[0]["label"], "@all");
    const auto emoticons = suggestions("Hello (thumbs");
    ASSERT_EQ(emoticons.size(), 2U);
    EXPECT_EQ(emoticons[1],
              (Json{{"label", "thumbsup"}, {"detail", "(thumbsup)"}, {"image", "found"}}));

    host->send({{"do", "select"}, {"row", 1}});
    EXPECT_EQ(host->await("changed")["entry"]["text"], "Hello (thumbsup)");
}

TEST_F(Conversation, OpensAnArticleAndSendsPictures) {
    load();
    const auto issue = openChat();
    service->say(issue, "This helps.",
                 {{"kind", "kb"}, {"kb", {{"id", "kb-3"}, {"title", "Dark"}, {"preview", "a+b"}}}});
    const auto line = awaitLine("This helps.", false);
    EXPECT_EQ(line["kb"], (Json{{"id", "kb-3"}, {"title", "Dark"}, {"preview", "a b"}}));
    host->send({{"do", "tapLine"}, {"id", line["id"]}, {"part", "attachment"}});
    host->await("refused");
    host->send({{"do", "tapLine"}, {"id", line["id"]}, {"part", "kb"}});
    EXPECT_THAT(host->await("web").value("html", ""), testing::HasSubstr("Check that the light"));
    host->send({{"do", "back"}});
    host->await("left");

    const auto pick = [this](const Json& files) {
        host->send({{"do", "press"}, {"label", "Attach"}});
        host->await("chooser");
        host->send({{"do", "pick"}, {"files", files}});
    };
    pick(Json::array());
    pick({folder.path / "missing.png", SUPPORTSDK_SOURCE_DIR "/resources/images/star-on.png"});
    EXPECT_EQ(host->await("alert")["title"], "Unable to upload attachment");
    host->send({{"do", "choose"}, {"label", "OK"}});
    const auto sent = awaitLineWith("the picture in the room", [](const Json& found) {
        return found.value("previewShown", false);
    });
    EXPECT_EQ(sent["type"], "attachment");
    EXPECT_EQ(sent["mine"], true);
    host->send({{"do", "tapLine"}, {"id", sent["id"]}, {"part", "attachment"}});
    EXPECT_EQ(host->await("web")["url"], sent["url"]);
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
