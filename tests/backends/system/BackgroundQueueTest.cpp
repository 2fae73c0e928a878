#include <pthread.h>

#include <array>
#include <csignal>
#include <future>
#include <thread>

#include "backends/system/ThreadBackgroundQueue.h"

namespace supportsdk::test {
namespace {

using namespace std::chrono_literals;

class BackgroundQueueTest : public testing::Test {
 protected:
    template <typename Future>
    static bool arrives(Future& future) {
        return future.wait_for(20s) == std::future_status::ready;
    }
    std::unique_ptr<ThreadBackgroundQueue> background = std::make_unique<ThreadBackgroundQueue>();
};

TEST_F(BackgroundQueueTest, WorkThatBlocksDoesNotHoldUpOtherWork) {
    std::promise<void> release;
    auto gate = release.get_future().share();
    for (std::size_t slow = 1; slow < ThreadBackgroundQueue::maximumThreads; ++slow)
        background->post([gate] { gate.wait(); });
    std::promise<void> ran;
    auto done = ran.get_future();
    background->post([&] { ran.set_value(); });

    EXPECT_TRUE(arrives(done));
    release.set_value();
}

TEST_F(BackgroundQueueTest, ASerialQueueKeepsTheOrderOnANamedThreadThatTakesNoSignals) {
    const auto serial = background->makeSerialQueue("com.goquorrand.networkstatus");
    std::vector<int> order;
    std::array<char, 16> name{};
    bool blocked = false;
    std::promise<void> last;
    auto done = last.get_future();

    for (int number = 0; number < 100; ++number)
        serial->post([&order, number] { order.push_back(number); });
    serial->post([&] {
        pthread_getname_np(pthread_self(), name.data(), name.size());
        sigset_t mask;
        pthread_sigmask(SIG_SETMASK, nullptr, &mask);
        blocked = sigismember(&mask, SIGTERM) == 1;
        last.set_value();
    });

    ASSERT_TRUE(arrives(done));
    EXPECT_EQ(order.size(), 100u);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    EXPECT_STREQ(name.data(), "networkstatus");
    EXPECT_TRUE(blocked);
}

TEST_F(BackgroundQueueTest, DroppingASerialQueueWaitsForWhatRunsAndDropsTheRest) {
    auto serial = background->makeSerialQueue("q");
    std::promise<void> started;
    auto running = started.get_future();
    std::promise<void> release;
    auto gate = release.get_future().share();
    std::atomic<bool> finished = false;
    std::atomic<bool> second = false;
    serial->post([&, gate] {
        started.set_value();
        gate.wait();
        finished = true;
    });
    // The gate opens when the work behind it is dropped, so not before the queue has been told to
    // end.
    std::shared_ptr<void> opener(nullptr, [&](void*) { release.set_value(); });
    serial->post([&second, held = std::move(opener)] { second = true; });
    ASSERT_TRUE(arrives(running));

    serial.reset();
    EXPECT_TRUE(finished);
    EXPECT_FALSE(second);
}

TEST_F(BackgroundQueueTest, WorkMayDropTheQueueThatRunsIt) {
    auto serial = background->makeSerialQueue("q");
    std::promise<void> dropped;
    auto done = dropped.get_future();
    auto& queue = *serial;
    queue.post([&dropped, own = std::move(serial)]() mutable {
        own.reset();
        dropped.set_value();
    });
    EXPECT_TRUE(arrives(done));

    std::promise<void> gone;
    auto end = gone.get_future();
    background->post([this, &gone] {
        background.reset();
        gone.set_value();
    });
    EXPECT_TRUE(arrives(end));
}

TEST_F(BackgroundQueueTest, WorkThatIsDroppedMayPostWhileTheQueueGoes) {
    std::shared_ptr<void> poster(nullptr,
                                 [queue = background.get()](void*) { queue->post([] {}); });
    std::promise<void> release;
    auto gate = release.get_future().share();
    for (std::size_t slow = 0; slow < ThreadBackgroundQueue::maximumThreads; ++slow)
        background->post([gate] { gate.wait(); });
    background->post([poster = std::move(poster)] {});

    std::thread releaser([&] { release.set_value(); });
    background.reset();
    releaser.join();
}

}  // namespace
}  // namespace supportsdk::test
