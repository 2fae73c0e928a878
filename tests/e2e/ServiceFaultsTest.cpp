#include <array>
#include <csignal>

#include "tests/e2e/FaultRoad.h"

// The service fails at each step of the road: what the person sees of it, and that the way goes on
// once the service is well again.

namespace supportsdk::test {
namespace {

enum class Step { settings, customer, create, stored, chatGet, chatEnter, check, resolve, cancel };

struct Request {
    const char* name;
    const char* method;
    const char* path;
};

const Request& requestOf(Step step) {
    static constexpr std::array<Request, 9> requests = {{{"settings", "GET", "/app/get"},
                                                         {"customer", "POST", "/customers/resolve"},
                                                         {"create", "POST", "/issues/create"},
                                                         {"stored", "GET", "/issues/5"},
                                                         {"chatGet", "POST", "/chat/get/"},
                                                         {"chatEnter", "POST", "/chat/enter/"},
                                                         {"check", "GET", "/issues/5"},
                                                         {"resolve", "POST", "/issues/resolve/"},
                                                         {"cancel", "POST", "/issues/cancel/"}}};
    return requests.at(static_cast<std::size_t>(step));
}

struct Row {
    Step step;
    const char* fault;
    std::vector<std::string> sees;
};

const char kServer[] = "Request failed: internal server error (500)";
const char kLost[] = "The connection to the server was lost.";
const char kCreating[] = "Starting Chat";
const char kOpening[] = "Retrieving chat information.";
const char kConnecting[] = "Connecting to chat server";
const char kJoining[] = "Joining room";
const char kReadOnly[] = "Unable to retrieve chat information. Attempting to retrieve transcripts.";
const char kChecking[] = "Checking issue status";
const char kResolving[] = "Resolving issue";
const char kCancelling[] = "Cancelling issue";

std::string unresolved(const std::string& why) {
    return "Unable to resolve issue[" + why + "]";
}

class ServiceFaults : public FaultRoad {
 protected:
    /// Everything before the step goes well, and the fault waits at it.
    void walkTo(Step step, const std::string& fault) {
        if (step > Step::customer) load();
        if (step >= Step::check) openChat();
        if (step == Step::stored) {
            openChat();
            host->send({{"do", "quit"}});
            EXPECT_EQ(host->waitForEnd(), 0);
            host = startHost();
            load();
        }
        if (step == Step::cancel) strike("status", requestOf(Step::resolve).path);
        strike(fault, requestOf(step).path, {{"method", requestOf(step).method}});
        mark();
    }

    void take(Step step) {
        if (step >= Step::check) return press("End Chat");
        if (step >= Step::create) return chooseChat();
        host->send({{"do", "load"},
                    {"configuration", service->configuration()},
                    {"customer", service->ready()["customer"]}});
    }

    /// The person tries again, and all is well.
    void tryAgain(Step step) {
        if (step >= Step::check) {
            host->send({{"do", "choose"}, {"label", "OK"}});  // the alert, if there is one
            press("End Chat");
            host->await("left", {{"class", "ChatViewController"}});
            return;
        }
        if (step < Step::create) load();
        host->send({{"do", "back"}});  // the screen, if there is one
        openChat();
        say("Here I am.");
    }
};

const std::vector<Row> rows = {
    {Step::settings, "status", {"Unable to retrieve settings: " + std::string(kServer)}},
    // A success that cannot be read counts as one that says nothing: no channel is offered.
    {Step::settings, "garbage", {"customer"}},
    {Step::customer, "drop", {"Unable to retrieve customer information: " + std::string(kLost)}},
    {Step::create, "status", {kCreating, "Unable to create issue: " + std::string(kServer)}},
    // Nothing but the end of the progress tells that it came to nothing.
    {Step::create, "garbage", {kCreating, kGone}},
    // An issue that cannot be had is replaced by a new one; a broken read is repeated unseen.
    {Step::stored, "status", {kCreating, kCreating, kOpening, kConnecting, kJoining, kGone}},
    {Step::stored, "drop", {kCreating, kOpening, kConnecting, kJoining, kGone}},
    {Step::chatGet, "status", {kCreating, kOpening, kReadOnly}},
    // Without a record there is no room to join: only the join's own time-out ends this.
    {Step::chatGet, "garbage", {kCreating, kOpening, kConnecting, kJoining}},
    {Step::chatEnter, "status", {kCreating, kOpening, kConnecting, kJoining, kGone}},
    // An issue whose status nobody knows is left alone: the person wants to go.
    {Step::check, "status", {kChecking, "left"}},
    {Step::check, "garbage", {kChecking, kGone}},
    {Step::resolve, "status", {kChecking, kResolving, kCancelling, "left"}},
    // It was carried out and only the answer was lost: nothing is left to cancel.
    {Step::resolve, "cut", {kChecking, kResolving, kCancelling, unresolved("")}},
    {Step::cancel, "drop", {kChecking, kResolving, kCancelling, unresolved(kLost)}},
};

class EachFault : public ServiceFaults, public testing::WithParamInterface<Row> {};

TEST_P(EachFault, IsSeenAndOvercome) {
    const auto& [step, fault, sees] = GetParam();
    walkTo(step, fault);
    take(step);
    expectSights(sees);
    const bool hasEnded = sees.back() == "left";
    if (step >= Step::check) {
        EXPECT_NE(keepsItsIssue(), hasEnded);
    }
    if (!hasEnded) tryAgain(step);
}

INSTANTIATE_TEST_SUITE_P(Of, EachFault, testing::ValuesIn(rows), [](const auto& row) {
    return std::string(requestOf(row.param.step).name) + "_" + row.param.fault;
});

TEST_F(ServiceFaults, AScreenThatWaitsCanBeLeft) {
    load();
    strike("silence", "/chat/get/");
    chooseChat();
    host->await("progress", {{"text", kOpening}});
    mark();
    press("End Chat");
    expectSights({kChecking, kResolving, "left"});
    back("RatingViewController");

    strike("silence", "/issues/5", {{"method", "GET"}});
    openChat();
    mark();
    press("End Chat");
    host->await("progress", {{"text", kChecking}});
    press("Back");
    expectSights({kChecking, "left"});
    ASSERT_TRUE(service->remove("/faults"));
    openChat();
    say("Here I am.");
}

TEST_F(ServiceFaults, AServiceThatEndsMeanwhileIsNoticed) {
    service = ServiceProcess::start();
    host = startHost();
    load();
    strike("silence", "/issues/create");
    chooseChat();
    host->await("progress", {{"text", kCreating}});
    service->signal(SIGTERM);
    EXPECT_EQ(service->waitForEnd(std::chrono::seconds{2}), 0);
    expectSights({"customer", kCreating, "Unable to create issue: " + std::string(kLost)});

    chooseChat();
    expectSights({kCreating, "Unable to create issue: Could not connect to the server."});
    host->send({{"do", "quit"}});
    expectPromptEnd();
}

TEST_F(ServiceFaults, AServiceThatHangsKeepsNobodyFromEnding) {
    JsonLinesProcess technician(SUPPORTSDK_BINARY_DIR "/service/support-technician",
                                {"--lab", service->ready()["lab"]}, folder.path / "technician.log");
    load();
    const auto issue = openChat();
    ASSERT_TRUE(service->await("line", {{"issue_id", issue}, {"role", "technician"}}));
    service->signal(SIGSTOP);
    press("End Chat");
    host->await("progress", {{"text", kChecking}});
    host->signal(SIGTERM);
    expectPromptEnd();
    technician.signal(SIGTERM);
    EXPECT_EQ(technician.waitForEnd(std::chrono::seconds{3}), 0);
    service->signal(SIGCONT);
}

}  // namespace
}  // namespace supportsdk::test
