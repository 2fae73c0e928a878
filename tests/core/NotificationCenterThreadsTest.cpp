#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "supportsdk/core/NotificationCenter.h"

namespace supportsdk::test {
namespace {

TEST(NotificationCenterThreadsTest, threadsMayPostAndObserveAtOnce) {
    constexpr int rounds = 2000;
    NotificationCenter center;
    std::atomic<int> told = 0;
    const auto steady = center.addObserver("n", [&told](const auto&) { ++told; });

    const auto post = [&center] {
        for (int round = 0; round < rounds; ++round) center.post("n", std::int64_t{round});
    };
    const auto comeAndGo = [&center] {
        for (int round = 0; round < rounds; ++round) {
            const auto object = std::make_shared<int>(round);
            center.addObserver(object, "n", [](const auto&) {});
            const auto handle = center.addObserver("n", [](const auto&) {});
            if (round % 2 == 0) center.removeObserver(object.get(), "n");
        }
    };
    std::thread first(post);
    std::thread second(comeAndGo);
    std::thread third(post);
    first.join();
    second.join();
    third.join();
    EXPECT_EQ(told, 2 * rounds);
}

}  // namespace
}  // namespace supportsdk::test
