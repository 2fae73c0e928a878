#include "supportsdk/core/EventNames.h"
#include "supportsdk/core/NetworkStatus.h"
#include "supportsdk/core/NotificationCenter.h"
#include "tests/core/SupportFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;

constexpr std::uint32_t reachable = reachabilityReachable;
constexpr std::uint32_t required = reachabilityConnectionRequired;

TEST(NetworkStatusFlagsTest, decideTheStatus) {
    const std::vector<std::pair<std::uint32_t, int>> cases{
        {0, 0},
        {reachabilityIsWWAN, 0},
        {reachable, 1},
        {reachable | reachabilityIsWWAN | required | reachabilityInterventionRequired, 2},
        {reachable | required, 0},
        {reachable | required | reachabilityConnectionOnDemand, 1},
        {reachable | required | reachabilityConnectionOnTraffic, 1},
        {reachable | required | reachabilityConnectionOnDemand | reachabilityInterventionRequired,
         0}};
    for (const auto& [flags, status] : cases) {
        EXPECT_EQ(NetworkStatus::statusForFlags(flags), status) << flags;
    }
    EXPECT_EQ(NetworkStatus::localWiFiStatusForFlags(reachable), 0);
    EXPECT_EQ(NetworkStatus::localWiFiStatusForFlags(reachabilityIsDirect), 0);
    EXPECT_EQ(NetworkStatus::localWiFiStatusForFlags(reachable | reachabilityIsDirect), 1);
}

class NetworkStatusTest : public testing::Test {
 protected:
    FakeReachabilityRef& ref() { return *fakes.reachability->refs.back(); }

    FakePlatform fakes;
};

TEST_F(NetworkStatusTest, asksForItsAddressAndReadsItsFlags) {
    const auto internet = NetworkStatus::reachabilityForInternetConnection(fakes.platform);
    const auto wifi = NetworkStatus::reachabilityForLocalWiFi(fakes.platform);
    EXPECT_THAT(fakes.reachability->addresses, ElementsAre(0U, 0xA9FE0000U));
    EXPECT_EQ(fakes.background->labels.back(), "com.goquorrand.networkstatus");
    ref().current = reachable | required;
    EXPECT_EQ(wifi->currentReachabilityStatus(), 0);
    EXPECT_TRUE(wifi->connectionRequired());
    ref().current = reachable | reachabilityIsDirect;
    EXPECT_EQ(wifi->currentReachabilityStatus(), 1);
    ref().current.reset();
    EXPECT_EQ(wifi->currentReachabilityStatus(), 0);
    EXPECT_FALSE(wifi->connectionRequired());

    fakes.reachability->available = false;
    EXPECT_FALSE(NetworkStatus::reachabilityWithHostName(fakes.platform, "x.example"));
}

TEST_F(NetworkStatusTest, keepsItselfAliveWhileItWatchesAndTellsInOrder) {
    auto status = NetworkStatus::reachabilityWithHostName(fakes.platform, "x.example");
    const std::weak_ptr<NetworkStatus> watched = status;
    std::vector<std::string> told;
    status->reachableBlock = [&told](NetworkStatus&) { told.emplace_back("reachable"); };
    status->unreachableBlock = [&told](NetworkStatus&) { told.emplace_back("unreachable"); };
    status->reachabilityBlock = [&told](NetworkStatus&, std::uint32_t flags) {
        told.push_back(std::to_string(flags));
    };
    const auto registration = NotificationCenter::shared().addObserver(
        notification::networkReachabilityChanged, [&](const Notification& posted) {
            EXPECT_EQ(posted.object.object(), watched.lock());
            told.emplace_back("posted");
        });

    EXPECT_TRUE(status->startNotifier());
    EXPECT_TRUE(status->startNotifier());
    EXPECT_EQ(ref().callbacksSet, 1);
    status->reachableOnWWAN = false;
    status.reset();
    ref().change(reachable);
    fakes.queue->drain();
    ref().change(reachable | reachabilityIsWWAN);
    fakes.queue->drain();
    EXPECT_THAT(told, ElementsAre("reachable", "2", "posted", "unreachable", "262146", "posted"));

    // A change that is still on its way finds nobody.
    ref().change(0);
    watched.lock()->stopNotifier();
    EXPECT_TRUE(watched.expired());
    fakes.queue->drain();
    EXPECT_EQ(told.size(), 6U);
    EXPECT_FALSE(ref().callback || ref().queue);
}

TEST_F(NetworkStatusTest, aNotifierThatCannotWatchUndoesWhatItDid) {
    auto status = NetworkStatus::reachabilityWithHostName(fakes.platform, "x.example");
    ref().acceptsQueue = false;
    EXPECT_FALSE(status->startNotifier());
    EXPECT_FALSE(ref().callback);
    const std::weak_ptr<NetworkStatus> weak = status;
    status.reset();
    EXPECT_TRUE(weak.expired());
}

}  // namespace
}  // namespace supportsdk::test
