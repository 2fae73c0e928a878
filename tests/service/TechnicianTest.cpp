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

TEST(TechnicianTest, EndsOnSigterm) {
    const auto log = std::filesystem::temp_directory_path() /
                     ("technician-" + std::to_string(getpid()) + ".log");
    const auto technician =
        ChildProcess::start({{SUPPORTSDK_BINARY_DIR "/service/support-technician", "--lab",
                              sharedService().ready()["lab"].get<std::string>()},
                             log});
    ASSERT_TRUE(technician);
    technician->signal(SIGTERM);
    EXPECT_TRUE(technician->waitForEnd(std::chrono::seconds{5}));
    std::filesystem::remove(log);
}

}  // namespace

}  // namespace supportsdk::test
