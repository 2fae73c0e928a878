#include <algorithm>

#include "tests/e2e/ChatRoad.h"

// Rooms and lines as nobody wants them: the person can go on, or sees why not.

namespace supportsdk::test {
namespace {

class HostileRoom : public ChatRoad {
 protected:
    void SetUp() override {
        ChatRoad::SetUp();
        load();
        issue_ = openChat();
    }

    void lab(const std::string& what, Json more = Json::object()) {
        more["issue"] = issue_;
        ASSERT_TRUE(service->post(what, more)) << what;
    }

    /// Out of the chat and into it again.
    void openAgain() {
        press("Back");
        host->await("left", {{"class", "ChatViewController"}});
        chooseChat();
        host->await("screen", {{"class", "ChatViewController"}});
    }

    std::string issue_;
};

TEST_F(HostileRoom, ANicknameThatIsTakenIsHadAsSoonAsItIsFree) {
    say("Before.");
    host->send({{"do", "quit"}});
    EXPECT_EQ(host->waitForEnd(), 0);
    lab("/occupy");
    host = startHost();
    load();
    chooseChat();
    host->await("progress", {{"text", "Joining room"}});
    host->send({{"do", "wait"}, {"milliseconds", 300}});
    expectRefusal("Am I in?", kOffline);

    lab("/kick");
    awaitOnline(true);
    host->send({{"do", "send"}});
    awaitLine("Am I in?", true);
    expectLines({"Before.", "Am I in?"});
}

TEST_F(HostileRoom, WhoIsThrownOutSeesItAndCanComeBack) {
    for (const auto* blow : {"/kick", "/destroy"}) {
        SCOPED_TRACE(blow);
        const auto before = std::string("Before ") + blow;
        say(before);
        lab(blow);
        awaitOnline(false);
        expectRefusal("Am I out?", kOffline);
        openAgain();
        awaitOnline(true);
        say(std::string("After ") + blow);
    }
}

TEST_F(HostileRoom, TenThousandLinesOfHistoryKeepNobodyWaiting) {
    constexpr std::size_t count = 10'000;
    say("Before.");
    lab("/replay", {{"lines", count}});
    lab("/cut");
    const auto before = service->get("/events")->at("next").get<std::uint64_t>();
    awaitLine("Line 1", false);
    host->send({{"do", "defaults"}});
    host->await(
        "an answer meanwhile",
        [](const Json& report) { return report.value("is", "") == "defaults"; },
        std::chrono::seconds{3});
    host->send({{"do", "show"}});
    host->await(
        "all lines", [](const Json& report) { return linesOf(report).size() > count; },
        std::chrono::seconds{60});

    Lines wanted = {"Before."};
    for (std::size_t i = 1; i <= count; ++i) wanted.push_back("Line " + std::to_string(i));
    auto seen = linesOf(show());
    std::sort(wanted.begin(), wanted.end());
    std::sort(seen.begin(), seen.end());
    EXPECT_EQ(seen.size(), wanted.size());
    EXPECT_TRUE(seen == wanted);
    say("After.");
    const auto requests =
        service->get("/events?kind=request&after=" + std::to_string(before))->at("results").size();
    EXPECT_LT(requests, 100U) << "the service is not asked for each of the lines";
}

TEST_F(HostileRoom, LongLinesGoAsFarAsTheServerTakesThem) {
    const std::string longText(200'000, 'W');
    service->say(issue_, longText);
    awaitLine(longText, false);
    say(longText);
    expectRefusal(longText + longText, "Your message is too long to be sent.");
    say("Short.");
}

TEST_F(HostileRoom, FiveThousandParticipantsAreKnownByName) {
    Json participants = Json::object();
    Json keys = Json::array();
    for (int i = 0; i < 5'000; ++i) {
        const auto number = std::to_string(i);
        keys.push_back("partners_users:" + number);
        participants[keys.back()] = {{"name", "Person " + number}, {"alias", "@p" + number}};
    }
    lab("/occupy", {{"participants", keys}});
    auto record = service->get("/records/comm")->at("results").back();
    record["participants_eligible"] = participants;
    record["participants"] = keys;
    strike("answer", "/chat/get/", {{"content", record.dump()}});
    host->send({{"do", "quit"}});
    EXPECT_EQ(host->waitForEnd(), 0);

    host = startHost();
    load();
    EXPECT_EQ(openChat(), issue_);
    service->say(issue_, "Hello from the crowd.", {{"from", "partners_users:4999"}});
    EXPECT_EQ(awaitLine("Hello from the crowd.", false)["name"], "Person 4999");
    say("Hello to all of you.");
}

}  // namespace
}  // namespace supportsdk::test
