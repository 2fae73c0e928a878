#include <csignal>

#include "tests/service/ServiceCalls.h"

namespace supportsdk::test {
namespace {

using std::chrono::seconds;

TEST(LifetimeTest, EndsInOrderWithAllThatHangsOnIt) {
    const auto service = ServiceProcess::start();
    ASSERT_TRUE(service);
    // A kept connection whose request is never answered, and one that waits.
    ServiceCalls kept(*service);
    kept.get("/sdk/v1/app/get");
    service->post("/faults", {{"kind", "silence"}, {"path", "/sdk/v1/kb/get"}});
    std::thread silent([&] { kept.get("/sdk/v1/kb/get"); });
    std::thread waiting([&] { service->await("never", Json::object(), 0, seconds{30}); });
    ASSERT_TRUE(service->await("request", {{"path", "/sdk/v1/kb/get"}}));

    const auto chatServer = service->chatServerId();
    service->signal(SIGINT);
    EXPECT_EQ(service->waitForEnd(seconds{5}), 0);
    silent.join();
    waiting.join();
    EXPECT_TRUE(processEnds(chatServer, seconds{0}));
}

TEST(LifetimeTest, EndsInOrderWhileItStillStarts) {
    // It has opened its seed, and waits for what is in there, when the signal comes.
    const std::string program = SUPPORTSDK_BINARY_DIR "/service/support-service";
    const std::string seed = SUPPORTSDK_SOURCE_DIR "/service/seed.json";
    const auto script = "folder=$(mktemp -d) && mkfifo $folder/seed && { " + program +
                        " --seed $folder/seed >$folder/said & exec 3>$folder/seed; kill -TERM $!;"
                        " cat " +
                        seed +
                        " >&3; exec 3>&-; wait $! && test ! -s $folder/said;"
                        " status=$?; rm -r $folder; exit $status; }";
    EXPECT_EQ(std::system(script.c_str()), 0);
}

TEST(LifetimeTest, KilledItTakesTheChatServerWithIt) {
    const auto service = ServiceProcess::start();
    ASSERT_TRUE(service);
    service->signal(SIGKILL);
    ASSERT_TRUE(service->waitForEnd(seconds{5}));
    EXPECT_TRUE(processEnds(service->chatServerId(), seconds{5}));
}

TEST(LifetimeTest, StateOutlivesTheServiceAndOneAtATimeHoldsIt) {
    const TemporaryFolder folder;
    std::string issue;
    {
        const auto service = ServiceProcess::start({"--data", folder.path});
        ASSERT_TRUE(service);
        issue = ServiceCalls(*service).createIssue()["id"];
        ASSERT_TRUE(service->say(issue, "Keep this"));
        ASSERT_TRUE(service->await("line", {{"issue_id", issue}}));

        EXPECT_FALSE(ServiceProcess::start({"--data", folder.path}));
        LineProcess printing({SUPPORTSDK_BINARY_DIR "/service/support-service", "--data",
                              folder.path, "--print-configuration"});
        EXPECT_TRUE(printing.awaitLine("integrationId"));
        EXPECT_EQ(printing.waitForEnd(), 0);
    }
    const auto service = ServiceProcess::start({"--data", folder.path});
    ASSERT_TRUE(service);
    ServiceCalls calls(*service);
    const auto stored = calls.get("/sdk/v1/issues/" + issue).body["results"][0];
    EXPECT_EQ(stored["transcripts"].begin().value().begin().value()["message"], "Keep this");
    EXPECT_TRUE(service->say(issue, "Go on"));
}

TEST(LifetimeTest, UnusableArgumentsAreSaidSo) {
    for (const std::string arguments : {"--port x", "--port 70000", "--seed /no/such", "--what",
                                        "--integration nobody", "--port"}) {
        const auto command =
            SUPPORTSDK_BINARY_DIR "/service/support-service " + arguments + " >/dev/null 2>&1";
        EXPECT_NE(std::system(command.c_str()), 0) << arguments;
    }
}

}  // namespace
}  // namespace supportsdk::test
