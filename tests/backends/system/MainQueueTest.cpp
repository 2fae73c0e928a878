#include <array>
#include <thread>

#include "backends/asio/AsioMainQueue.h"

namespace supportsdk::test {
namespace {

using namespace std::chrono_literals;

class MainQueueTest : public testing::Test {
 protected:
    template <typename Predicate>
    bool runUntil(Predicate done) {
        const auto deadline = std::chrono::steady_clock::now() + 20s;
        while (!done()) {
            if (std::chrono::steady_clock::now() > deadline) return false;
            queue->runOne(50ms);
        }
        return true;
    }

    std::shared_ptr<AsioMainQueue> queue = std::make_shared<AsioMainQueue>();
    std::vector<int> ran;
};

TEST_F(MainQueueTest, PostsFromManyThreadsAllRunOnTheMainThreadInEachThreadsOrder) {
    constexpr int threads = 4;
    constexpr int posts = 250;
    std::array<std::vector<int>, threads> seen;
    int offMain = 0;

    std::vector<std::thread> posters;
    for (int thread = 0; thread < threads; ++thread) {
        posters.emplace_back([&, thread] {
            for (int number = 0; number < posts; ++number) {
                queue->post([&, thread, number] {
                    seen[thread].push_back(number);
                    if (!queue->isCurrent()) ++offMain;
                });
            }
        });
    }
    const auto all = [&] {
        return std::all_of(seen.begin(), seen.end(), [](auto& got) { return got.size() == posts; });
    };
    EXPECT_TRUE(runUntil(all));
    for (auto& poster : posters) poster.join();

    for (const auto& got : seen) EXPECT_TRUE(std::is_sorted(got.begin(), got.end()));
    EXPECT_EQ(offMain, 0);
}

TEST_F(MainQueueTest, WorkPostedByTheMainThreadIsNotOvertakenByALaterPostOfAnother) {
    queue->post([&] {
        ran.push_back(1);
        queue->post([&] { ran.push_back(2); });
        std::thread([&] {
            EXPECT_FALSE(queue->isCurrent());
            queue->post([&] { ran.push_back(3); });
        }).join();
        EXPECT_EQ(ran.size(), 1u) << "a post ran inside the call";
    });

    EXPECT_TRUE(runUntil([&] { return ran.size() == 3; }));
    EXPECT_THAT(ran, testing::ElementsAre(1, 2, 3));
}

TEST_F(MainQueueTest, TimersFireInTheOrderOfTheirTimesAndNeverEarly) {
    const auto start = std::chrono::steady_clock::now();
    const auto late = queue->after(40ms, [&] { ran.push_back(40); });
    const auto soon = queue->after(10ms, [&] { ran.push_back(10); });
    const auto now = queue->after(0ms, [&] { ran.push_back(0); });
    EXPECT_TRUE(ran.empty()) << "a timer fired inside the call";

    EXPECT_TRUE(runUntil([&] { return ran.size() == 3; }));
    EXPECT_THAT(ran, testing::ElementsAre(0, 10, 40));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 39ms);
}

TEST_F(MainQueueTest, ACancelledTimerDoesNotRunThoughItIsDueAndFreesWhatItHeld) {
    std::vector<Registration> timers(2);
    // Both are due in the same turn of the loop; whichever comes first cancels the other.
    for (std::size_t self : {0u, 1u}) {
        timers[self] = queue->after(5ms, [&, self] {
            ran.push_back(static_cast<int>(self));
            timers[1 - self].reset();
            timers[self].reset();
        });
    }
    std::this_thread::sleep_for(20ms);

    bool settled = false;
    const auto check = queue->after(30ms, [&] { settled = true; });
    EXPECT_TRUE(runUntil([&] { return settled; }));
    EXPECT_EQ(ran.size(), 1u);

    auto held = std::make_shared<int>(1);
    std::weak_ptr<int> watch = held;
    auto timer = queue->after(1h, [held = std::move(held)] {});

    timer.reset();
    EXPECT_TRUE(runUntil([&] { return watch.expired(); }));
}

TEST_F(MainQueueTest, DestructionDropsPendingWorkUnrunAndRegistrationsMayOutliveTheQueue) {
    auto held = std::make_shared<int>(1);
    int fired = 0;
    auto timer = queue->after(0ms, [held, &fired] { ++fired; });
    auto kept = queue->after(1h, [held, &fired] { ++fired; });
    // Work that owns a registration of the very queue that is going away.
    auto owned = std::make_shared<Registration>(queue->after(1h, [&fired] { ++fired; }));
    // And work that posts when it is dropped.
    std::shared_ptr<void> poster(nullptr,
                                 [&dying = *queue, held](void*) { dying.post([held] {}); });
    queue->post([held, owned, poster, &fired] { ++fired; });
    owned.reset();
    poster.reset();

    queue.reset();
    EXPECT_EQ(held.use_count(), 1);
    timer.reset();
    kept.reset();
    EXPECT_EQ(fired, 0);
}

TEST_F(MainQueueTest, StopEndsTheInnermostRunAndIsNotLostWhenItComesFirst) {
    std::vector<std::string> steps;
    queue->post([&] {
        queue->post([&] {
            steps.emplace_back("inner");
            queue->stop();
        });
        queue->run();
        steps.emplace_back("back in outer");
        queue->post([&] {
            steps.emplace_back("outer goes on");
            std::thread([&] { queue->stop(); }).join();
            queue->post([&] { steps.emplace_back("after stop"); });
        });
    });

    queue->run();
    EXPECT_THAT(steps, testing::ElementsAre("inner", "back in outer", "outer goes on"));

    queue->stop();
    queue->run();
    EXPECT_EQ(steps.size(), 3u);
    queue->poll();
    EXPECT_EQ(steps.back(), "after stop");
    EXPECT_FALSE(queue->runOne(1ms));
}

TEST_F(MainQueueTest, SurvivesAnExceptionOfPostedWork) {
    queue->post([] { throw std::runtime_error("host's own"); });
    queue->post([&] { queue->stop(); });
    EXPECT_THROW(queue->run(), std::runtime_error);
    queue->run();
}

}  // namespace
}  // namespace supportsdk::test
