#include <csignal>

#include "service/technician/Script.h"
#include "tests/service/ServiceCalls.h"

namespace supportsdk::test {
namespace {

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
    LineProcess technician({SUPPORTSDK_BINARY_DIR "/service/support-technician", "--lab",
                            service.ready()["lab"].get<std::string>()});
    const auto issue = ServiceCalls(service).createIssue()["id"].get<std::string>();
    const Json customer{{"from", "members_users:u-101"}};
    ASSERT_TRUE(service.say(issue, "The screen is dark", customer));
    const auto answer = service.await("line", {{"issue_id", issue}, {"role", "technician"}});
    ASSERT_TRUE(answer);
    EXPECT_NE(answer->at("body").get<std::string>().find("qd-msg://"), std::string::npos);
    ASSERT_TRUE(service.say(issue, "Bye", customer));
    EXPECT_TRUE(service.await("issue", {{"issue_id", issue}, {"change", "closed"}}));
    technician.signal(SIGTERM);
    EXPECT_TRUE(technician.waitForEnd());
}

}  // namespace
}  // namespace supportsdk::test
