#include "service/state/CredentialBlock.h"
#include "tests/e2e/ChatRoad.h"

// The chat server fails, before and during a conversation: what the person sees of it.

namespace supportsdk::test {
namespace {

const char kOpening[] = "Retrieving chat information.";
const char kConnecting[] = "Connecting to chat server";
const char kJoining[] = "Joining room";

class ChatFaults : public ChatRoad {
 protected:
    ~ChatFaults() override { order("resume"); }

    /// The issue that is created next sends its customer to another chat server, or with another
    /// password.
    void misdirect(std::uint16_t port, const std::string& password) {
        const auto configuration = service->configuration();
        const auto domain = service->ready()["xmpp"]["domain"].get<std::string>();
        const auto block = service::encryptCredentials(
            {"c-1", "guest@" + domain, password, "127.0.0.1", port, "members_users:u-101;1"},
            configuration["apiKey"]);
        const Json issue = {{"id", "5999"}, {"comm_id", "c-1"}, {"xmpp_data", block.value()}};
        const Json record = {{"external_id", "c-1@rooms." + domain}};
        strike("answer", "/issues/create", {{"content", Json{{"results", {issue}}}.dump()}});
        strike("answer", "/chat/get/", {{"content", record.dump()}});
    }

    void leave() {
        press("End Chat");
        expectSights({"Checking issue status", "left"});
    }
};

TEST_F(ChatFaults, AConversationOutlivesTheServerAndItsConnection) {
    load();
    const auto issue = openChat();
    say("Before.");
    order("kill");
    awaitOnline(false);
    expectRefusal("Typed meanwhile.", kOffline);
    order("start");
    awaitOnline(true);
    host->send({{"do", "send"}});
    awaitLine("Typed meanwhile.", true);
    expectLines({"Before.", "Typed meanwhile."});

    host->send({{"do", "type"}, {"text", "Half a sent"}});
    ASSERT_TRUE(service->post("/cut", {{"issue", issue}}));
    for (const auto* line : {"One.", "Two.", "Three."}) service->say(issue, line);
    awaitLine("Three.", false);
    awaitOnline(true);
    service->say(issue, "Four.");
    expectLines({"Before.", "Typed meanwhile.", "One.", "Two.", "Three.", "Four."});
    EXPECT_EQ(show()["entry"]["text"], "Half a sent");
    host->send({{"do", "send"}});
    awaitLine("Half a sent", true);
}

TEST_F(ChatFaults, ALineThatTheServerNeverTookIsGivenBack) {
    load();
    openChat();
    say("Before.");
    order("pause");
    sendText("Lost on the way.");
    EXPECT_EQ(show()["entry"]["text"], "") << "as far as anybody can know, it has been sent";
    order("kill");
    order("start");
    host->await("error", {{"text", kNotSent}});
    EXPECT_EQ(show()["entry"]["text"], "Lost on the way.");
    expectLines({"Before."});
    host->send({{"do", "send"}});
    awaitLine("Lost on the way.", true);
    expectLines({"Before.", "Lost on the way."});
}

TEST_F(ChatFaults, AServerThatNeverSpeaksCanBeLeftAndQuit) {
    order("pause");
    for (const bool leaves : {true, false}) {
        host = startHost();
        load();
        misdirect(service->ready()["xmpp"]["port"], "secret");
        mark();
        chooseChat();
        expectSights({"Starting Chat", kOpening, kConnecting});
        if (leaves) leave();
        host->send({{"do", "quit"}});
        expectPromptEnd();
    }
}

TEST_F(ChatFaults, AWrongPasswordIsSaid) {
    load();
    misdirect(service->ready()["xmpp"]["port"], "a guess");
    mark();
    chooseChat();
    expectSights({"Starting Chat", kOpening, kConnecting, "[Unable to log in to the chat.]"});
    host->send({{"do", "choose"}, {"label", "OK"}});
    leave();
    openChat();
    say("With the right one.");
}

TEST_F(ChatFaults, AnUntrustedServerIsNeitherToldNorBelievedAnything) {
    host = startHost({});
    host->send({{"do", "load"}, {"configuration", service->configuration()}});
    expectSights({"Unable to retrieve settings: The server's certificate is not trusted."});

    // Over plain HTTP the road leads on, to a chat server that is not trusted either.
    host->send({{"do", "load"},
                {"configuration", service->configuration("harbor-lobby", false)},
                {"customer", service->ready()["customer"]}});
    host->await("delegate", {{"operation", "supportButtonDidGetCustomer"}});
    mark();
    chooseChat();
    expectSights({"Starting Chat", kOpening, kConnecting,
                  "[Unable to connect to the chat server. The server's certificate is not "
                  "accepted: unable to get local issuer certificate.]"});
    host->send({{"do", "quit"}});
    expectPromptEnd();
}

}  // namespace
}  // namespace supportsdk::test
