#include <sys/wait.h>

#include <csignal>

#include "service/prosody/ChildProcess.h"
#include "service/technician/Script.h"
#include "tests/service/ServiceCalls.h"

namespace supportsdk::test {

namespace {

using service::ChildProcess;
using service::Script;

TEST(ScriptTest, TheFirstRuleThatFitsAnswers) {
    const auto script = Script::standard();
    EXPECT_FALSE(script.greeting.empty());
    EXPECT_TRUE(script.answerTo("THANK you, bye").resolve);
    const auto buttons = script.answerTo("The screen in our lobby stays dark.");
    EXPECT_EQ(buttons.say.at(0)["actions"].size(), 2U);
    for (const auto& action : buttons.say.at(0)["actions"]) {
        const auto pressed = action["uri"].get<std::string>().substr(9);
        EXPECT_NE(script.answerTo(pressed).say, script.otherwise) << pressed;
    }
    EXPECT_EQ(script.answerTo("???").say, script.otherwise);
    EXPECT_FALSE(Script::read("[1]"));
}

TEST(TechnicianTest, AnswersResolvesAndEndsOnSigterm) {
    auto& service = sharedService();
    const auto log = std::filesystem::temp_directory_path() /
                     ("technician-" + std::to_string(getpid()) + ".log");
    const auto technician =
        ChildProcess::start({{SUPPORTSDK_BINARY_DIR "/service/support-technician", "--lab",
                              service.ready()["lab"].get<std::string>()},
                             log});
    ASSERT_TRUE(technician);
    ServiceCalls calls(service.configuration("harbor-lobby", false));
    const auto issue = calls.createIssue()["id"].get<std::string>();
    const Json customer{{"from", "members_users:u-101"}};
    ASSERT_TRUE(service.say(issue, "The screen is dark", customer));
    const auto answer = service.await("line", {{"issue_id", issue}, {"role", "technician"}});
    ASSERT_TRUE(answer);
    EXPECT_NE(answer->at("body").get<std::string>().find("qd-msg://"), std::string::npos);

    ASSERT_TRUE(service.say(issue, "Bye", customer));
    const auto after = answer->at("seq").get<std::uint64_t>();
    ASSERT_TRUE(service.await("line", {{"issue_id", issue}, {"role", "technician"}}, after));
    ASSERT_TRUE(service.await("issue", {{"issue_id", issue}, {"change", "closed"}}, after));

    technician->signal(SIGTERM);
    EXPECT_TRUE(technician->waitForEnd(std::chrono::seconds{5}));
    std::filesystem::remove(log);
}

}  // namespace

}  // namespace supportsdk::test
