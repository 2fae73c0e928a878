#include <future>
#include <thread>

#include "backends/asio/AsioMainQueue.h"
#include "backends/system/ThreadBackgroundQueue.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/proactive/RunAndWait.h"
#include "supportsdk/proactive/SupportSDKProactive.h"
#include "supportsdk/proactive/files/FileHandle.h"
#include "tests/core/SupportFixture.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk::test {
namespace {

using namespace std::chrono_literals;

/// With a real loop and real threads; the test's own thread is the main one.
class ProactiveThreadsTest : public SupportTest {
 protected:
    ProactiveThreadsTest() {
        fakes.platform->mainQueue = loop;
        fakes.platform->backgroundQueue = std::make_shared<ThreadBackgroundQueue>();
        fakes.mainBundle->files["support.json"] = acme.dump();
        proactive = SupportSDKProactive::create("support", std::nullopt, fakes.platform);
        fakes.http->answer(0, 200, {{"supportProactiveEnabled", true}});
        fakes.http->sent.clear();
    }

    /// Takes what was sent, and answers it.
    void receive() {
        for (auto& [request, completion] : std::exchange(fakes.http->sent, {})) {
            const auto body = parseJson(toText(request.body)).value_or(Json());
            if (const auto data = stringForKey(body, "file_data")) ++received[*data];
            for (const auto& check : arrayForKey(body, "checks"))
                ++received[stringForKey(check, "status_detail").value_or("?")];
            completion({200, {}, toBytes("{}"), ""});
        }
    }

    TemporaryFolder folder;
    std::shared_ptr<AsioMainQueue> loop = std::make_shared<AsioMainQueue>();
    std::shared_ptr<SupportSDKProactive> proactive;
    std::map<std::string, int> received;
};

TEST_F(ProactiveThreadsTest, WhatManyThreadsQueueAndFlushIsSentOnce) {
    constexpr int perThread = 600;
    const auto produce = [this](const std::string& name) {
        for (int number = 0; number < perThread; ++number) {
            const auto mark = name + std::to_string(number);
            if (number % 100 == 0) {
                const auto dump = FileHandle::forReadingAtPath(folder.write(mark, "M" + mark));
                proactive->putAppDumpCheckWithFile(dump, 1, mark);
                proactive->checkQueueFlushHandler();
            } else {
                proactive->putAppHealthCheck("check", 1, mark);
            }
        }
    };
    std::vector<std::future<void>> producers;
    for (const auto* name : {"a", "b", "c", "d"})
        producers.push_back(std::async(std::launch::async, produce, name));
    for (int flush = 0; flush < 20; ++flush) {
        proactive->checkQueueFlushHandler();
        receive();
        loop->poll();
    }
    // Without the loop: who flushes elsewhere never waits for the main thread.
    for (auto& producer : producers) ASSERT_EQ(producer.wait_for(20s), std::future_status::ready);
    proactive->checkQueueFlushHandler();
    EXPECT_EQ(proactive->stack.size(), 0U);
    const std::size_t dumps = 4 * perThread / 100;
    do {
        receive();
    } while (received.size() < 4 * perThread + dumps && loop->runOne(10s));
    EXPECT_EQ(received.size(), 4 * perThread + dumps);
    for (const auto& [mark, times] : received) EXPECT_EQ(times, 1) << mark;
}

TEST_F(ProactiveThreadsTest, OnlyTheMainThreadSends) {
    proactive->putAppHealthCheck("check", 1, "mark");
    std::async(std::launch::async, [this] { proactive->checkQueueFlushHandler(); }).get();
    EXPECT_EQ(fakes.http->sent.size(), 0U);
    loop->poll();
    EXPECT_EQ(fakes.http->sent.size(), 1U);
}

TEST_F(ProactiveThreadsTest, AnEndDuringAnUploadIsQuiet) {
    std::filesystem::resize_file(folder.write("large", ""), std::size_t{60} << 20U);
    for (int round = 0; round < 5; ++round) {
        proactive->uploadFile(FileHandle::forReadingAtPath(folder.path / "large"));
        std::this_thread::sleep_for(round * 2ms);
        proactive = SupportSDKProactive::create("support", std::nullopt, fakes.platform);
    }
    fakes.platform->backgroundQueue = nullptr;
    while (loop->poll() > 0) continue;
    for (const auto& [request, completion] : fakes.http->sent) EXPECT_EQ(request.method, "GET");
}

TEST(RunAndWaitTest, ItRunsOnceAndWhole) {
    ThreadBackgroundQueue queue;
    std::atomic<int> runs = 0;
    const auto wait = [&] {
        bool hasRun = false;
        runAndWait(queue, [&] {
            std::this_thread::sleep_for(runs % 8 == 0 ? 120ms : 0ms);
            ++runs;
            hasRun = true;
        });
        EXPECT_TRUE(hasRun);
    };
    std::vector<std::future<void>> waits;
    for (int caller = 0; caller < 16; ++caller)
        waits.push_back(std::async(std::launch::async, wait));
    for (std::size_t all = 0; all < 2 * ThreadBackgroundQueue::maximumThreads; ++all) {
        auto done = std::make_shared<std::promise<void>>();
        waits.push_back(done->get_future());
        queue.post([done, &wait] { wait(), done->set_value(); });
    }
    for (auto& each : waits) ASSERT_EQ(each.wait_for(20s), std::future_status::ready);
    EXPECT_EQ(runs, 16 + 2 * static_cast<int>(ThreadBackgroundQueue::maximumThreads));
}

}  // namespace
}  // namespace supportsdk::test
