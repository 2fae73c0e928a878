#include <sys/wait.h>

#include <csignal>
#include <filesystem>

#include "tests/service/ServiceCalls.h"

namespace supportsdk::test {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

Json lineFrom(const ServiceProcess& service, const std::string& issue, std::uint64_t after) {
    return service.await("line", {{"issue_id", issue}}, after).value_or(Json());
}

TEST(LifetimeTest, EndsInOrderWithAllThatHangsOnIt) {
    for (const int signal : {SIGTERM, SIGINT}) {
        const auto service = ServiceProcess::start();
        ASSERT_TRUE(service);
        // An idle kept connection, a request that waits, and one that is never answered.
        ServiceCalls kept(service->configuration("harbor-lobby", false));
        kept.get("/sdk/v1/app/get");
        service->post("/faults", {{"kind", "silence"}, {"path", "/sdk/v1/kb/get"}});
        std::thread silent([&] { kept.get("/sdk/v1/kb/get"); });
        std::thread waiting([&] { service->await("never", Json::object(), 0, seconds{30}); });
        ASSERT_TRUE(service->await("request", {{"path", "/sdk/v1/kb/get"}}));

        const auto chatServer = service->chatServerId();
        service->signal(signal);
        const auto status = service->waitForEnd(seconds{5});
        silent.join();
        waiting.join();
        ASSERT_TRUE(status);
        EXPECT_TRUE(WIFEXITED(*status) && WEXITSTATUS(*status) == 0);
        EXPECT_TRUE(processEnds(chatServer, milliseconds{0}));
    }
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

TEST(LifetimeTest, TheChatServerComesBackWithItsRooms) {
    const auto service = ServiceProcess::start();
    ASSERT_TRUE(service);
    ServiceCalls calls(service->configuration("harbor-lobby", false));
    const auto issue = calls.createIssue().at("id").get<std::string>();
    ASSERT_TRUE(service->post("/prosody", {{"do", "kill"}}));
    EXPECT_FALSE(service->say(issue, "Nobody hears this"));
    EXPECT_TRUE(calls.createIssue().is_null());
    ASSERT_TRUE(service->post("/prosody", {{"do", "start"}}));
    EXPECT_TRUE(service->say(issue, "Here again"));
    EXPECT_EQ(lineFrom(*service, issue, 0)["text"], "Here again");
}

TEST(LifetimeTest, StateOutlivesTheServiceAndOneAtATimeHoldsIt) {
    auto pattern = (std::filesystem::temp_directory_path() / "service-state-XXXXXX").string();
    ASSERT_TRUE(mkdtemp(pattern.data()));
    std::string issue;
    {
        const auto service = ServiceProcess::start({"--data", pattern});
        ASSERT_TRUE(service);
        issue = ServiceCalls(service->configuration("harbor-lobby", false)).createIssue()["id"];
        ASSERT_TRUE(service->say(issue, "Keep this"));
        ASSERT_FALSE(lineFrom(*service, issue, 0).is_null());

        EXPECT_FALSE(ServiceProcess::start({"--data", pattern}));
        const auto command = SUPPORTSDK_BINARY_DIR "/service/support-service --data " + pattern +
                             " --print-configuration >" + pattern + "/printed 2>&1";
        EXPECT_EQ(std::system(command.c_str()), 0);
        EXPECT_GT(std::filesystem::file_size(pattern + "/printed"), 100U);
    }
    const auto service = ServiceProcess::start({"--data", pattern});
    ASSERT_TRUE(service);
    ServiceCalls calls(service->configuration("harbor-lobby", false));
    const auto stored = calls.get("/sdk/v1/issues/" + issue).body["results"][0];
    EXPECT_EQ(stored["transcripts"].begin().value().begin().value()["message"], "Keep this");
    EXPECT_TRUE(service->say(issue, "Go on"));
    std::filesystem::remove_all(pattern);
}

TEST(LifetimeTest, UnusableArgumentsAreSaidSo) {
    for (const std::string arguments : {"--port x", "--port 70000", "--seed /no/such", "--what",
                                        "--integration nobody", "--port"}) {
        const auto command =
            SUPPORTSDK_BINARY_DIR "/service/support-service " + arguments + " >/dev/null 2>&1";
        const int status = std::system(command.c_str());
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) != 0) << arguments;
    }
}

}  // namespace

}  // namespace supportsdk::test
