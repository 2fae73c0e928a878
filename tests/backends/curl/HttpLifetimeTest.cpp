#include <future>

#include "tests/backends/curl/HttpFixture.h"

namespace supportsdk::test {
namespace {

using std::chrono::milliseconds;
using HttpLifetime = HttpFixture;

std::size_t threadCount() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
}

TEST_F(HttpLifetime, beginsWithTheFirstRequest) {
    LoopbackHttpServer server;
    const auto before = threadCount();
    makeClient({});
    EXPECT_EQ(threadCount(), before);
}

TEST_F(HttpLifetime, endsWithoutWaitingForTheNetwork) {
    LoopbackHttpServer server;
    server.on("/stall", [](const auto&, LoopbackConnection& connection) { connection.stall(); });
    server.answer("/ok", 200);
    int completed = 0;
    const auto start = [&](const char* path) {
        HttpRequest request;
        request.url = server.url(path);
        client->send(request, [&](const HttpResponse&) { ++completed; });
    };
    start("/stall");
    start("/ok");
    ASSERT_TRUE(queue->waitForPost()) << "the answer of /ok waits in the main queue";
    for (int i = 0; i < 20; ++i) start("/stall");
    const auto before = std::chrono::steady_clock::now();
    client.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - before, milliseconds{1000});
    queue->pumpFor(milliseconds{20});
    EXPECT_EQ(completed, 0);
}

TEST_F(HttpLifetime, mayEndInsideACompletion) {
    LoopbackHttpServer server;
    server.answer("/ok", 200);
    bool ended = false;
    HttpRequest request;
    request.url = server.url("/ok");
    client->send(request, [&](const HttpResponse&) {
        client.reset();
        ended = true;
    });
    EXPECT_TRUE(queue->pumpUntil([&] { return ended; }));
}

TEST_F(HttpLifetime, endsReadersToo) {
    LoopbackHttpServer server;
    std::promise<void> arrived;
    server.on("/stall", [&](const auto&, LoopbackConnection& connection) {
        arrived.set_value();
        connection.stall();
    });
    auto reader = std::async(std::launch::async, [&, borrowed = client.get()] {
        return borrowed->read(server.url("/stall"), std::chrono::seconds{30});
    });
    arrived.get_future().wait();
    client.reset();
    ASSERT_EQ(reader.wait_for(std::chrono::seconds{5}), std::future_status::ready);
    EXPECT_FALSE(reader.get());
}

}  // namespace
}  // namespace supportsdk::test
