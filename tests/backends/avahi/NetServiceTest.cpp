#include <avahi-common/error.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>

#include "backends/avahi/AvahiNetServiceFactory.h"
#include "tests/support/LoopMainQueue.h"
#include "tests/support/MdnsResponder.h"

namespace supportsdk::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

constexpr const char* type = "_connect._tcp";

/// "published NAME", or the code of the error.
class Outcomes : public NetServiceDelegate {
 public:
    explicit Outcomes(std::shared_ptr<LoopMainQueue> queue) : queue_(std::move(queue)) {}

    void netServiceDidPublish(NetService& service) override { add("published " + service.name()); }
    void netServiceDidNotPublish(NetService&, const Json& errors) override {
        EXPECT_NE(errors.value("description", ""), "");
        add(std::to_string(errors.value("code", 0)));
    }
    /// The next one; "" when none comes in time.
    std::string next() {
        if (!queue_->pumpUntil([this] { return !waiting_.empty(); }, 20s)) return {};
        auto first = waiting_.front();
        waiting_.pop_front();
        return first;
    }
    [[nodiscard]] bool none() const { return waiting_.empty(); }
    std::function<void()> then;

 private:
    void add(const std::string& outcome) {
        EXPECT_TRUE(queue_->isCurrent());
        waiting_.push_back(outcome);
        if (then) then();
    }

    std::shared_ptr<LoopMainQueue> queue_;
    std::deque<std::string> waiting_;
};

std::string code(int error) {
    return std::to_string(error);
}

class NetServiceTest : public testing::Test {
 protected:
    void SetUp() override {
        if (const auto obstacle = MdnsResponder::obstacle(); !obstacle.empty())
            GTEST_SKIP() << obstacle;
        ASSERT_TRUE(responder->startBus());
    }
    ~NetServiceTest() override {
        responder->stopDaemon();
        responder->stopBus();
    }

    std::shared_ptr<NetService> publish(const std::string& name,
                                        const std::shared_ptr<Outcomes>& told,
                                        const std::string& domain = "local.",
                                        std::uint16_t port = 22666) {
        auto service = factory.makeService(domain, type, name, port);
        service->setIncludesPeerToPeer(true);
        service->setDelegate(told);
        EXPECT_TRUE(
            service->setTXTRecordData(toBytes("\x08"
                                              "device=d"
                                              "\x0D"
                                              "version=1.2;3")));
        service->publish();
        service->publish();
        EXPECT_TRUE(told->none()) << "answered inside the call";
        return service;
    }

    static MdnsResponder* onlyOne() {
        static MdnsResponder one;
        return &one;
    }

    MdnsResponder* const responder = onlyOne();
    std::shared_ptr<LoopMainQueue> queue = std::make_shared<LoopMainQueue>();
    AvahiNetServiceFactory factory{queue};
    std::shared_ptr<Outcomes> outcomes = std::make_shared<Outcomes>(queue);
};

TEST_F(NetServiceTest, IsReadByOthersUntilItIsDropped) {
    ASSERT_TRUE(responder->startDaemon());
    ServiceBrowser browser(type);
    auto service = publish("Lobby; 2nd floor", outcomes);
    EXPECT_EQ(outcomes->next(), "published Lobby; 2nd floor");
    const auto found = browser.awaitService("Lobby; 2nd floor");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->domain, "local");
    EXPECT_EQ(found->host, "device.local");
    EXPECT_EQ(found->port, 22666);
    EXPECT_THAT(found->txt, ElementsAre(Pair("device", "d"), Pair("version", "1.2;3")));

    service.reset();
    EXPECT_TRUE(browser.awaitGone("Lobby; 2nd floor"));
    EXPECT_TRUE(outcomes->none());
}

TEST_F(NetServiceTest, ATakenNameIsChangedUpToALimit) {
    ASSERT_TRUE(responder->startDaemon());
    std::vector<std::shared_ptr<NetService>> services;
    std::multiset<std::string> all;
    std::multiset<std::string> expected = {"published Lobby", code(AVAHI_ERR_COLLISION)};
    for (std::uint16_t port = 1; port <= 16; ++port)
        services.push_back(publish("Lobby", outcomes, "local", port));
    for (auto left = services.size(); left > 0; --left) all.insert(outcomes->next());
    for (int number = 2; number <= 15; ++number)
        expected.insert("published Lobby #" + std::to_string(number));
    EXPECT_EQ(all, expected);
    const auto named = [](const auto& service) { return service->name() == "Lobby #15"; };
    EXPECT_TRUE(std::any_of(services.begin(), services.end(), named));
}

TEST_F(NetServiceTest, AServiceThatReplacesAnotherGetsItsName) {
    ASSERT_TRUE(responder->startDaemon());
    for (std::uint16_t port = 1; port <= 5; ++port) {
        publish("Lobby", outcomes, "local", port);
        auto second = publish("Lobby", outcomes, "local", 22666);
        EXPECT_EQ(outcomes->next(), "published Lobby");
        EXPECT_TRUE(outcomes->none()) << "the first one is heard of no more";
    }
}

TEST_F(NetServiceTest, WithoutANameItTakesTheDevicesAndFollowsIt) {
    ASSERT_TRUE(responder->startDaemon());
    const auto service = publish("", outcomes);
    EXPECT_EQ(outcomes->next(), "published device");
    ASSERT_TRUE(responder->renameDevice("porch"));
    EXPECT_EQ(outcomes->next(), "published porch");
    EXPECT_EQ(service->name(), "porch");
}

TEST_F(NetServiceTest, ADaemonThatComesLateOrAgainGetsIt) {
    const auto service = publish("Lobby", outcomes);
    EXPECT_EQ(outcomes->next(), code(AVAHI_ERR_NO_DAEMON));
    for (const char* time : {"late", "again", "at last"}) {
        ASSERT_TRUE(responder->startDaemon());
        EXPECT_EQ(outcomes->next(), "published Lobby") << time;
        EXPECT_TRUE(ServiceBrowser(type).awaitService("Lobby")) << time;
        if (time == std::string("at last")) break;
        responder->stopDaemon();
        EXPECT_EQ(outcomes->next(), code(AVAHI_ERR_DISCONNECTED)) << time;
    }
    responder->stopBus();
    EXPECT_EQ(outcomes->next(), code(AVAHI_ERR_DISCONNECTED));
    const auto others = std::make_shared<Outcomes>(queue);
    const auto other = publish("Lobby", others);
    EXPECT_EQ(others->next(), code(AVAHI_ERR_NO_DAEMON)) << "no bus";
}

TEST_F(NetServiceTest, WhatCannotBePublishedIsRefused) {
    const std::string zero(1, '\0');
    const std::vector<std::array<std::string, 3>> refused = {
        {"", type, ""},
        {"..", type, ""},
        {"local.", "", ""},
        {"local.", "_connect", ""},
        {"local.", type, "\xFF"},
        {"local.", "_connect._tcp" + zero, ""},
        {"local.", type, std::string(64, 'n')}};
    for (const auto& [domain, wanted, name] : refused)
        EXPECT_FALSE(factory.makeService(domain, wanted, name, 1)) << domain << wanted << name;
    const auto service = factory.makeService("local.", type, "", 1);
    EXPECT_FALSE(
        service->setTXTRecordData(toBytes("\x05"
                                          "four")));
    EXPECT_FALSE(service->setTXTRecordData(Bytes(65'536)));

    // The daemon would take it and send nothing.
    ASSERT_TRUE(service->setTXTRecordData(Bytes(std::size_t{256} * 6, std::byte{255})));
    service->setDelegate(outcomes);
    service->publish();
    EXPECT_EQ(outcomes->next(), code(AVAHI_ERR_INVALID_RECORD));
}

TEST_F(NetServiceTest, MayBeDroppedByItsDelegateOrBeforeTheAnswer) {
    auto service = publish("Lobby", outcomes);
    outcomes->then = [&] { service.reset(); };
    EXPECT_EQ(outcomes->next(), code(AVAHI_ERR_NO_DAEMON));
    EXPECT_FALSE(service);

    service = publish("Lobby", outcomes);
    EXPECT_TRUE(queue->waitForPost());
    service.reset();
    queue->pumpFor(0ms);
    EXPECT_TRUE(outcomes->none());
}

}  // namespace
}  // namespace supportsdk::test
