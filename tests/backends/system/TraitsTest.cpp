#include <gtest/gtest.h>

#include "backends/gio/PortalTraits.h"
#include "tests/backends/system/FakePortal.h"
#include "tests/support/LoopMainQueue.h"
#include "tests/support/MessageBus.h"

namespace supportsdk::test {
namespace {

using Manner = FakePortal::Manner;

class TraitsTest : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(bus.start());
        setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
    }

    /// Waits for the observer to be told, and gives the look of then.
    std::optional<bool> changed() {
        if (!queue->pumpUntil([this] { return told > 0; })) return std::nullopt;
        --told;
        return traits->darkMode();
    }
    Registration observe() {
        return traits->observe([this] {
            EXPECT_TRUE(queue->isCurrent());
            ++told;
        });
    }
    static void choose(FakePortal& portal, guint32 scheme) {
        portal.set("color-scheme", g_variant_new_uint32(scheme));
    }

    MessageBus bus{"session"};
    std::shared_ptr<LoopMainQueue> queue = std::make_shared<LoopMainQueue>();
    std::unique_ptr<PortalTraits> traits = std::make_unique<PortalTraits>(queue);
    int told = 0;
};

TEST_F(TraitsTest, TheLookFollowsThePortal) {
    for (const auto manner : {Manner::opens, Manner::oldSettings}) {
        FakePortal portal(bus.address(), manner);
        choose(portal, 1);
        traits = std::make_unique<PortalTraits>(queue);
        EXPECT_FALSE(traits->darkMode()) << "light until it is known";
        const auto watching = observe();
        EXPECT_EQ(changed(), true);
        choose(portal, 2);
        EXPECT_EQ(changed(), false);
    }
}

TEST_F(TraitsTest, APortalThatStartsLateOrAgainIsAsked) {
    const auto watching = observe();
    {
        FakePortal portal(bus.address(), Manner::opens);
        choose(portal, 1);
        EXPECT_EQ(changed(), true);
    }
    const FakePortal portal(bus.address(), Manner::opens);
    EXPECT_EQ(changed(), false);
    bus.stop();
    EXPECT_FALSE(traits->darkMode());
}

TEST_F(TraitsTest, OnlyRealChangesAreTold) {
    FakePortal portal(bus.address(), Manner::opens);
    auto dropped = observe();
    const auto watching = observe();
    dropped.reset();
    choose(portal, 2);
    portal.set("accent-color", g_variant_new_uint32(1));
    portal.set("color-scheme", g_variant_new_string("dark"));
    portal.set("color-scheme", g_variant_new("(uu)", 1, 1));
    choose(portal, 77);
    EXPECT_FALSE(traits->darkMode());
    choose(portal, 1);
    EXPECT_EQ(changed(), true);
    EXPECT_EQ(told, 0);
}

TEST_F(TraitsTest, AnObserverMayDropThemAllAndTheTraits) {
    FakePortal portal(bus.address(), Manner::opens);
    choose(portal, 1);
    Registration second;
    auto first = traits->observe([&] {
        ++told;
        second.reset();
        traits.reset();
    });
    second = observe();
    EXPECT_TRUE(queue->pumpUntil([this] { return told > 0; }));
    EXPECT_FALSE(traits);
    EXPECT_EQ(told, 1);
}

TEST_F(TraitsTest, WithoutABusTheLookIsLight) {
    setenv("DBUS_SESSION_BUS_ADDRESS", "autolaunch:", 1);
    EXPECT_FALSE(traits->darkMode());
    const auto watching = observe();
    traits.reset();
}

}  // namespace
}  // namespace supportsdk::test
