#include "tests/backends/curl/HttpFixture.h"

namespace supportsdk::test {
namespace {

using std::chrono::milliseconds;
using HttpFaults = HttpFixture;

constexpr const char* kLost = "The connection to the server was lost.";
constexpr const char* kUnclear = "The server's answer could not be understood.";

TEST_F(HttpFaults, thatEndTheConnectionAreReported) {
    LoopbackHttpServer server;
    server.answerRaw("/empty", "");
    server.answerRaw("/garbage", "\x16\x03\x01 what is this\r\n\r\n");
    server.answerRaw("/half-head", "HTTP/1.1 200 OK\r\nContent-Le");
    server.answerRaw("/interim", "HTTP/1.1 100 Continue\r\n\r\n");
    server.answerRaw("/half-body", "HTTP/1.1 206 OK\r\nX-A: 1\r\nContent-Length: 10\r\n\r\n12345");
    server.answerRaw("/half-chunk", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nff\r\nx");
    server.answerRaw("/bad-zip",
                     "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 4\r\n\r\nnope");
    server.on("/reset", [](const auto&, LoopbackConnection& connection) {
        connection.send("HTTP/1.1 503 X\r\nContent-Length: 10\r\n\r\n12345");
        connection.reset();
    });
    const struct {
        const char* path;
        int status;
        const char* error;
    } cases[] = {{"/empty", 0, kLost},        {"/garbage", 0, kUnclear},
                 {"/half-head", 200, kLost},  {"/interim", 0, kLost},
                 {"/half-body", 206, kLost},  {"/half-chunk", 200, kLost},
                 {"/bad-zip", 200, kUnclear}, {"/reset", 503, kLost}};
    for (const auto& each : cases) {
        const auto response = get(server.url(each.path));
        EXPECT_EQ(response.status, each.status) << each.path;
        EXPECT_EQ(response.error, each.error) << each.path;
        EXPECT_TRUE(response.body.empty()) << each.path;
    }
}

TEST_F(HttpFaults, beforeTheConnectionAreReported) {
    int closedPort = 0;
    {
        const LoopbackHttpServer gone;
        closedPort = gone.port();
    }
    const auto refused = get("http://127.0.0.1:" + std::to_string(closedPort) + "/");
    EXPECT_EQ(refused.status, 0);
    EXPECT_EQ(refused.error, "Could not connect to the server.");
    // No resolver takes a label of 64 bytes, so that the answer never depends on a network.
    const auto unresolved = get("http://" + std::string(64, 'a') + ".invalid/");
    EXPECT_EQ(unresolved.status, 0);
    EXPECT_EQ(unresolved.error, "The server could not be found.");
}

TEST_F(HttpFaults, ofSilenceEndAtTheTimeLimits) {
    LoopbackHttpServer server;
    server.on("/silent", [](const auto&, LoopbackConnection& connection) { connection.stall(); });
    server.on("/stops", [](const auto&, LoopbackConnection& connection) {
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n12345");
        connection.stall();
    });
    const auto drip = [](const auto&, LoopbackConnection& connection) {
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 12\r\n\r\n");
        for (int i = 0; i < 12 && connection.pause(milliseconds{50}); ++i) connection.send("x");
    };
    server.on("/drip", drip);
    const auto timed = [&](const char* path, milliseconds idle, milliseconds total) {
        HttpRequest request;
        request.url = server.url(path);
        request.idleTimeout = idle;
        request.totalTimeout = total;
        return fetch(request);
    };
    const auto before = std::chrono::steady_clock::now();
    const auto silent = timed("/silent", milliseconds{300}, milliseconds{60000});
    const auto took = std::chrono::steady_clock::now() - before;
    EXPECT_EQ(std::to_string(silent.status) + silent.error, "0The request timed out.");
    EXPECT_GE(took, milliseconds{300});
    EXPECT_LT(took, milliseconds{3000});
    const auto stops = timed("/stops", milliseconds{300}, milliseconds{60000});
    EXPECT_EQ(std::to_string(stops.status) + stops.error, "200The request timed out.");
    EXPECT_EQ(timed("/drip", milliseconds{400}, milliseconds{60000}).error, "")
        << "slow is not idle";
    EXPECT_EQ(timed("/drip", milliseconds{400}, milliseconds{200}).error, "The request timed out.");
}

TEST_F(HttpFaults, ofEndlessHeadersAreCutOff) {
    LoopbackHttpServer server;
    server.on("/bomb", [](const auto&, LoopbackConnection& connection) {
        connection.send("HTTP/1.1 200 OK\r\n");
        while (connection.send("X-Filler: " + std::string(4000, 'x') + "\r\n")) {
        }
        connection.close();
    });
    EXPECT_EQ(get(server.url("/bomb")).error, "The server's answer has too many headers.");
}

TEST_F(HttpFaults, onAKeptConnectionResendOnlyWhatIsHarmlessTwice) {
    LoopbackHttpServer server;
    server.answer("/ok", 200);
    server.answerRaw("/dies", "");
    EXPECT_EQ(get(server.url("/ok")).status, 200);
    EXPECT_EQ(post(server.url("/dies"), "create").error, kLost);
    EXPECT_EQ(server.requestCount("/dies"), 1U);
    EXPECT_EQ(get(server.url("/ok")).status, 200);
    EXPECT_EQ(get(server.url("/dies")).error, kLost);
    EXPECT_EQ(server.requestCount("/dies"), 3U);
}

}  // namespace
}  // namespace supportsdk::test
