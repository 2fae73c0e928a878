#include <arpa/inet.h>
#include <linux/if.h>
#include <linux/if_arp.h>
#include <sched.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "backends/netlink/NetlinkReachability.h"
#include "backends/netlink/ReachabilityRules.h"
#include "backends/system/ThreadBackgroundQueue.h"

namespace supportsdk::test {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t reachable = reachabilityReachable;
constexpr std::uint32_t direct = reachable | reachabilityIsDirect;
constexpr std::uint32_t local = direct | reachabilityIsLocalAddress;

TEST(ReachabilityRules, CellularIsKnownByKindDeviceTypeOrName) {
    const auto link = [](std::uint16_t type, const char* name, const char* kind,
                         const char* device) {
        return NetworkLink{1, IFF_UP | IFF_LOWER_UP | IFF_BROADCAST, type, name, kind, device};
    };
    for (const auto& cellular :
         {link(ARPHRD_RAWIP, "qmi0", "", ""), link(ARPHRD_PPP, "tty0", "", ""),
          link(ARPHRD_ETHER, "usb0", "", "wwan"), link(ARPHRD_NONE, "x0", "wwan", ""),
          link(519, "y0", "rmnet", ""), link(ARPHRD_ETHER, "wwp0s20u4", "", "")}) {
        EXPECT_TRUE(isCellular(cellular)) << cellular.name;
        EXPECT_FALSE(carriesLinkLocal(cellular)) << cellular.name;
    }
    for (const auto& other :
         {link(ARPHRD_ETHER, "eth0", "veth", ""), link(ARPHRD_ETHER, "wlp3s0", "", "wlan")}) {
        EXPECT_FALSE(isCellular(other)) << other.name;
        EXPECT_TRUE(carriesLinkLocal(other)) << other.name;
    }
}

/// The flags that were pushed, in their order.
class Pushed {
 public:
    void add(std::uint32_t flags) {
        const std::lock_guard lock(mutex_);
        all_.push_back(flags);
        arrived_.notify_all();
    }
    /// Waits until `flags` is the latest.
    bool ends(std::uint32_t flags) {
        std::unique_lock lock(mutex_);
        return arrived_.wait_for(lock, 20s, [&] { return !all_.empty() && all_.back() == flags; });
    }
    std::vector<std::uint32_t> take() {
        const std::lock_guard lock(mutex_);
        return std::exchange(all_, {});
    }

 private:
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::vector<std::uint32_t> all_;
};

/// Each test runs in a network of its own: "near" with 10.9.0.1/24, cabled to "far".
class ReachabilityTest : public testing::Test {
 protected:
    void SetUp() override {
        if (geteuid() != 0) GTEST_SKIP() << "a network namespace needs root";
        if (unshare(CLONE_NEWNET) != 0) GTEST_SKIP() << "no network namespace: " << strerror(errno);
    }

    static void ip(const std::string& command) {
        ASSERT_EQ(std::system(("ip " + command).c_str()), 0) << command;
    }
    static void cable(const std::string& near = "near", const std::string& far = "far") {
        ip("link set lo up");
        ip("link add " + near + " type veth peer name " + far);
        ip("addr add 10.9.0.1/24 dev " + near);
        ip("link set " + far + " up");
        ip("link set " + near + " up");
        ip("route add default via 10.9.0.2");
    }

    std::shared_ptr<ReachabilityRef> to(const std::string& address) {
        sockaddr_in four{};
        four.sin_family = AF_INET;
        if (inet_pton(AF_INET, address.c_str(), &four.sin_addr) == 1)
            return source.withAddress(reinterpret_cast<const sockaddr&>(four));
        sockaddr_in6 six{};
        six.sin6_family = AF_INET6;
        inet_pton(AF_INET6, address.c_str(), &six.sin6_addr);
        return source.withAddress(reinterpret_cast<const sockaddr&>(six));
    }
    std::optional<std::uint32_t> flags(const std::string& address) { return to(address)->flags(); }

    void watch(const std::shared_ptr<ReachabilityRef>& ref) {
        ASSERT_TRUE(ref->setCallback([this](std::uint32_t value) { pushed.add(value); }));
        ASSERT_TRUE(ref->setQueue(queue));
    }
    static std::size_t threads() {
        const std::filesystem::directory_iterator tasks("/proc/self/task");
        return static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
    }
    /// Returns when everything posted before has run.
    void settle() {
        Pushed last;
        queue->post([&] { last.add(1); });
        ASSERT_TRUE(last.ends(1));
    }

    std::shared_ptr<ThreadBackgroundQueue> background = std::make_shared<ThreadBackgroundQueue>();
    NetlinkReachability source{background};
    Pushed pushed;
    std::shared_ptr<SerialQueue> queue = background->makeSerialQueue("test");
};

TEST_F(ReachabilityTest, FlagsFollowRouteGatewayAndLink) {
    for (const char* address : {"0.0.0.0", "8.8.8.8", "169.254.0.0", "127.0.0.1", "2001:db8::1"})
        EXPECT_EQ(flags(address), 0u) << address << " without any link";

    cable();
    EXPECT_EQ(flags("0.0.0.0"), reachable);
    EXPECT_EQ(flags("::"), reachable);
    EXPECT_EQ(flags("8.8.8.8"), reachable);
    EXPECT_EQ(flags("10.9.0.77"), direct);
    EXPECT_EQ(flags("10.9.0.1"), local);
    EXPECT_EQ(flags("169.254.0.0"), direct);
    EXPECT_EQ(flags("2001:db8::1"), 0u);

    ip("route add unreachable 192.0.2.0/24");
    ip("route add blackhole 198.51.100.0/24");
    EXPECT_EQ(flags("192.0.2.1"), 0u);
    EXPECT_EQ(flags("198.51.100.1"), 0u);

    // The preferred default route lies on a link without a carrier, the other does not.
    ip("link add idle type veth peer name off");
    ip("addr add 10.8.0.1/24 dev idle");
    ip("link set idle up");
    ip("route replace default via 10.9.0.2 metric 500");
    ip("route add default via 10.8.0.2 dev idle metric 1 onlink");
    EXPECT_EQ(flags("0.0.0.0"), reachable);
    ip("link set far down");
    EXPECT_EQ(flags("0.0.0.0"), 0u);
}

TEST_F(ReachabilityTest, ACellularLinkIsMarkedAndIsNoLocalNetwork) {
    cable("wwan0", "wwan1");
    EXPECT_EQ(flags("0.0.0.0"), reachable | reachabilityIsWWAN);
    EXPECT_EQ(flags("169.254.0.0"), 0u);
}

TEST_F(ReachabilityTest, PushesEachChangeOnce) {
    cable();
    // The thread sanitizer adds a thread of its own with a program's first one.
    std::thread([] {}).join();
    const auto before = threads();
    const auto internet = to("0.0.0.0");
    watch(internet);
    EXPECT_EQ(internet->flags(), reachable);

    ip("link set far down");
    EXPECT_TRUE(pushed.ends(0)) << "carrier lost";
    ip("link set far up");
    EXPECT_TRUE(pushed.ends(reachable)) << "carrier back";
    ip("route del default");
    EXPECT_TRUE(pushed.ends(0)) << "route gone";
    ip("route add default dev near");
    EXPECT_TRUE(pushed.ends(direct)) << "route without a gateway";
    ip("link set near down");
    EXPECT_TRUE(pushed.ends(0)) << "link switched off";
    ip("link set near up");
    ip("route add default via 10.9.0.2");
    EXPECT_TRUE(pushed.ends(reachable)) << "up again";

    const auto all = pushed.take();
    EXPECT_EQ(std::adjacent_find(all.begin(), all.end()), all.end()) << "pushed without a change";

    EXPECT_TRUE(internet->setQueue(nullptr));
    EXPECT_LE(threads(), before + 1) << "only the queue's own thread is left";
    ip("link set far down");
    settle();
    EXPECT_THAT(pushed.take(), testing::IsEmpty());
}

TEST_F(ReachabilityTest, ChangesThatMakeNoDifferenceAreNotPushed) {
    cable();
    const auto internet = to("8.8.8.8");
    const auto marker = to("10.9.0.77");
    watch(internet);
    Pushed markerPushed;
    ASSERT_TRUE(marker->setCallback([&](std::uint32_t value) { markerPushed.add(value); }));
    ASSERT_TRUE(marker->setQueue(queue));

    for (int number = 1; number < 30; ++number)
        ip("addr add 10.7.0." + std::to_string(number) + "/32 dev near");
    ip("route add 10.9.0.77 via 10.9.0.3");
    EXPECT_TRUE(markerPushed.ends(reachable));
    marker->setQueue(nullptr);
    internet->setCallback(nullptr);
    settle();
    EXPECT_THAT(pushed.take(), testing::IsEmpty());
}

TEST_F(ReachabilityTest, TheReferenceMayBeDroppedInsideItsCallback) {
    cable();
    auto internet = to("0.0.0.0");
    Pushed set;
    ASSERT_TRUE(internet->setCallback([&](std::uint32_t value) {
        EXPECT_TRUE(set.ends(1));
        internet.reset();
        pushed.add(value);
    }));
    ASSERT_TRUE(internet->setQueue(queue));
    set.add(1);

    ip("route del default");
    EXPECT_TRUE(pushed.ends(0));
    settle();
    EXPECT_FALSE(internet);
}

TEST_F(ReachabilityTest, NamesAreLookedUpInTheBackgroundAndTheirAddressesCount) {
    ip("link set lo up");
    const auto name = source.withHostName("localhost");
    watch(name);
    EXPECT_TRUE(name->flags() == local || pushed.ends(local));
    ip("link set lo down");
    EXPECT_TRUE(pushed.ends(0));

    const auto unknown = source.withHostName("no-such-host.invalid");
    unknown->setCallback([this](std::uint32_t value) { pushed.add(value + 7); });
    unknown->setQueue(queue);
    EXPECT_TRUE(unknown->flags() == 0U || pushed.ends(7)) << "a name without an address";

    EXPECT_FALSE(source.withHostName(""));
    EXPECT_FALSE(source.withHostName(std::string("a\0b", 3)));
    EXPECT_FALSE(source.withHostName(std::string(300, 'a')));
    const sockaddr other{AF_UNIX, {}};
    EXPECT_FALSE(source.withAddress(other));
}

}  // namespace
}  // namespace supportsdk::test
