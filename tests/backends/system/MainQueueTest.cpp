#include <condition_variable>
#include <thread>

#include "backends/asio/AsioMainQueue.h"
#include "tests/backends/system/GlibMainQueue.h"

namespace supportsdk::test {
namespace {

using namespace std::chrono_literals;

/// The two ways to run a main queue, driven alike.
struct AsioLoop {
    void turn() { queue->runOne(50ms); }
    std::shared_ptr<AsioMainQueue> queue = std::make_shared<AsioMainQueue>();
};

struct GlibLoop {
    ~GlibLoop() {
        queue.reset();
        g_main_context_unref(context);
    }
    void turn() {
        // The host's loop always has some source that wakes it.
        auto* wake = g_timeout_source_new(50);
        g_source_set_callback(
            wake, [](gpointer) -> gboolean { return TRUE; }, nullptr, nullptr);
        g_source_attach(wake, context);
        g_main_context_iteration(context, TRUE);
        g_source_destroy(wake);
        g_source_unref(wake);
    }
    GMainContext* context = g_main_context_new();
    std::shared_ptr<GlibMainQueue> queue = std::make_shared<GlibMainQueue>(context);
};

template <typename Loop>
class MainQueueTest : public testing::Test {
 protected:
    template <typename Predicate>
    bool runUntil(Predicate done) {
        const auto deadline = std::chrono::steady_clock::now() + 20s;
        while (!done()) {
            if (std::chrono::steady_clock::now() > deadline) return false;
            loop.turn();
        }
        return true;
    }

    MainQueue& queue() { return *loop.queue; }

    Loop loop;
    std::vector<int> ran;
};

using Loops = testing::Types<AsioLoop, GlibLoop>;
TYPED_TEST_SUITE(MainQueueTest, Loops);

TYPED_TEST(MainQueueTest, PostsFromManyThreadsAllRunOnTheMainThreadInEachThreadsOrder) {
    constexpr int threads = 4;
    constexpr int posts = 250;
    std::array<std::vector<int>, threads> seen;
    int offMain = 0;

    std::vector<std::thread> posters;
    for (int thread = 0; thread < threads; ++thread) {
        posters.emplace_back([&, thread] {
            for (int number = 0; number < posts; ++number) {
                this->queue().post([&, thread, number] {
                    seen[thread].push_back(number);
                    if (!this->queue().isCurrent()) ++offMain;
                });
            }
        });
    }
    const auto all = [&] {
        return std::all_of(seen.begin(), seen.end(), [](auto& got) { return got.size() == posts; });
    };
    EXPECT_TRUE(this->runUntil(all));
    for (auto& poster : posters) poster.join();

    for (const auto& got : seen) EXPECT_TRUE(std::is_sorted(got.begin(), got.end()));
    EXPECT_EQ(offMain, 0);
}

TYPED_TEST(MainQueueTest, WorkPostedByTheMainThreadIsNotOvertakenByALaterPostOfAnother) {
    auto& order = this->ran;
    this->queue().post([&] {
        order.push_back(1);
        this->queue().post([&] { order.push_back(2); });
        std::thread([&] {
            EXPECT_FALSE(this->queue().isCurrent());
            this->queue().post([&] { order.push_back(3); });
        }).join();
        EXPECT_EQ(order.size(), 1u) << "a post ran inside the call";
    });

    EXPECT_TRUE(this->runUntil([&] { return order.size() == 3; }));
    EXPECT_THAT(order, testing::ElementsAre(1, 2, 3));
}

TYPED_TEST(MainQueueTest, TimersFireInTheOrderOfTheirTimesAndNeverEarly) {
    const auto start = std::chrono::steady_clock::now();
    auto& order = this->ran;
    const auto late = this->queue().after(40ms, [&] { order.push_back(40); });
    const auto soon = this->queue().after(10ms, [&] { order.push_back(10); });
    const auto now = this->queue().after(0ms, [&] { order.push_back(0); });
    EXPECT_TRUE(order.empty()) << "a timer fired inside the call";

    EXPECT_TRUE(this->runUntil([&] { return order.size() == 3; }));
    EXPECT_THAT(order, testing::ElementsAre(0, 10, 40));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 39ms);
}

TYPED_TEST(MainQueueTest, ATimerCancelledWhenItIsAlreadyDueDoesNotRun) {
    std::vector<Registration> timers(2);
    // Both are due in the same turn of the loop; whichever comes first cancels the other.
    for (std::size_t self : {0u, 1u}) {
        timers[self] = this->queue().after(5ms, [&, self] {
            this->ran.push_back(static_cast<int>(self));
            timers[1 - self].reset();
            timers[self].reset();
        });
    }
    std::this_thread::sleep_for(20ms);

    bool settled = false;
    const auto check = this->queue().after(30ms, [&] { settled = true; });
    EXPECT_TRUE(this->runUntil([&] { return settled; }));
    EXPECT_EQ(this->ran.size(), 1u);
}

TYPED_TEST(MainQueueTest, CancellingFreesWhatTheTimerHeld) {
    auto held = std::make_shared<int>(1);
    std::weak_ptr<int> watch = held;
    auto timer = this->queue().after(1h, [held = std::move(held)] {});

    timer.reset();
    EXPECT_TRUE(this->runUntil([&] { return watch.expired(); }));
}

TYPED_TEST(MainQueueTest, DestructionDropsPendingWorkUnrunAndRegistrationsMayOutliveTheQueue) {
    auto held = std::make_shared<int>(1);
    int fired = 0;
    auto timer = this->queue().after(0ms, [held, &fired] { ++fired; });
    auto kept = this->queue().after(1h, [held, &fired] { ++fired; });
    // Work that owns a registration of the very queue that is going away.
    auto owned = std::make_shared<Registration>(this->queue().after(1h, [&fired] { ++fired; }));
    // And work that posts when it is dropped.
    std::shared_ptr<void> poster(nullptr,
                                 [&dying = this->queue(), held](void*) { dying.post([held] {}); });
    this->queue().post([held, owned, poster, &fired] { ++fired; });
    owned.reset();
    poster.reset();

    this->loop.queue.reset();
    EXPECT_EQ(held.use_count(), 1);
    timer.reset();
    kept.reset();
    EXPECT_EQ(fired, 0);
}

TEST(AsioMainQueue, StopEndsTheInnermostRunAndIsNotLostWhenItComesFirst) {
    AsioMainQueue queue;
    std::vector<std::string> steps;
    queue.post([&] {
        queue.post([&] {
            steps.emplace_back("inner");
            queue.stop();
        });
        queue.run();
        steps.emplace_back("back in outer");
        queue.post([&] {
            steps.emplace_back("outer goes on");
            std::thread([&] { queue.stop(); }).join();
            queue.post([&] { steps.emplace_back("after stop"); });
        });
    });

    queue.run();
    EXPECT_THAT(steps, testing::ElementsAre("inner", "back in outer", "outer goes on"));

    queue.stop();
    queue.run();
    EXPECT_EQ(steps.size(), 3u);
    queue.poll();
    EXPECT_EQ(steps.back(), "after stop");
    EXPECT_FALSE(queue.runOne(1ms));
}

TEST(AsioMainQueue, SurvivesAnExceptionOfPostedWork) {
    AsioMainQueue queue;
    queue.post([] { throw std::runtime_error("host's own"); });
    queue.post([&] { queue.stop(); });
    EXPECT_THROW(queue.run(), std::runtime_error);
    queue.run();
}

}  // namespace
}  // namespace supportsdk::test
