#include <sched.h>

#include "tests/e2e/ChatRoad.h"

// A network that takes what is sent and brings nothing back.

namespace supportsdk::test {
namespace {

bool run(const std::string& command) {
    return std::system(command.c_str()) == 0;
}

/// Everything of this program runs in a network of its own.
class LossyNetwork : public ChatRoad {
 protected:
    static void SetUpTestSuite() {
        isReady_ = unshare(CLONE_NEWNET) == 0 && run("ip link set lo up") &&
                   run("nft add table inet loss") &&
                   run("nft 'add chain inet loss in { type filter hook input priority 0; }'");
        if (isReady_) ChatRoad::SetUpTestSuite();
    }

    void SetUp() override {
        if (!isReady_) GTEST_SKIP() << "needs root, ip and nft for a network of its own";
        ChatRoad::SetUp();
    }

    /// What the chat server sends, acknowledgements included, never arrives.
    void loseAnswers() {
        const auto port = service->ready()["xmpp"]["port"].get<int>();
        ASSERT_TRUE(run("nft add rule inet loss in tcp sport " + std::to_string(port) + " drop"));
    }
    static void heal() { ASSERT_TRUE(run("nft flush table inet loss")); }

 private:
    static inline bool isReady_ = false;
};

TEST_F(LossyNetwork, WhatIsSentIntoOneIsSeenToArriveOrNot) {
    load();
    const auto issue = openChat();
    say("Before.");
    loseAnswers();
    sendText("Heard, though nobody tells.");
    ASSERT_TRUE(service->await("line", {{"text", "Heard, though nobody tells."}}));
    service->say(issue, "Can you read this?");
    awaitOnline(false, lossPatience);
    expectRefusal("Not now.", kOffline);

    heal();
    awaitOnline(true, lossPatience);
    expectLines({"Before.", "Heard, though nobody tells.", "Can you read this?"});
    host->send({{"do", "send"}});
    awaitLine("Not now.", true);
    expectLines({"Before.", "Heard, though nobody tells.", "Can you read this?", "Not now."});
}

}  // namespace
}  // namespace supportsdk::test
