#include <zlib.h>

#include "tests/backends/curl/HttpFixture.h"

namespace supportsdk::test {
namespace {

using HttpRequests = HttpFixture;

std::string gzip(const std::string& text) {
    z_stream stream{};
    deflateInit2(&stream, 9, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    std::string packed(deflateBound(&stream, text.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

TEST_F(HttpRequests, keepTheirConnection) {
    LoopbackHttpServer server;
    server.answer("/a", 200, R"({"results":[]})", {{"X-Token", "one"}, {"x-token", "two"}});
    for (int i = 0; i < 3; ++i) {
        const auto response = get(server.url("/a"));
        EXPECT_EQ(response.status, 200);
        EXPECT_EQ(toText(response.body), R"({"results":[]})");
        EXPECT_EQ(response.headers,
                  (HttpHeaders{{"X-Token", "one"}, {"x-token", "two"}, {"Content-Length", "14"}}));
        EXPECT_EQ(response.error, "");
    }
    EXPECT_EQ(get(server.url("/missing")).status, 404);
    EXPECT_EQ(server.connections(), 1);
}

TEST_F(HttpRequests, areSentAsTheyAre) {
    LoopbackHttpServer server;
    server.answer("/a/../b%20c", 200);
    server.answer("/e", 200);
    const std::string body = "{\"a\":1}" + std::string(200000, ' ') + std::string("\0end", 4);
    const auto response = post(server.url("/a/../b%20c?q=%41"), body,
                               {{"Content-Type", "application/json"},
                                {"X-Empty", ""},
                                {"X-Blank", "  "},
                                {"X-Twice", "1"},
                                {"X-Twice", "2"}});
    EXPECT_EQ(response.status, 200) << response.error;
    const auto request = server.lastRequest("/a/../b%20c");
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.target, "/a/../b%20c?q=%41");
    EXPECT_EQ(request.body, body);
    EXPECT_EQ(request.header("Content-Type"), "application/json");
    EXPECT_EQ(request.header("X-Empty"), "");
    EXPECT_EQ(request.header("X-Blank"), "");
    EXPECT_EQ(std::count(request.headers.begin(), request.headers.end(),
                         std::pair<std::string, std::string>{"X-Twice", "2"}),
              1);
    EXPECT_FALSE(request.hasHeader("Expect"));

    EXPECT_EQ(post(server.url("/e"), "").status, 200);
    EXPECT_EQ(server.lastRequest("/e").header("Content-Length"), "0");
    EXPECT_FALSE(server.lastRequest("/e").hasHeader("Content-Type"));
}

TEST_F(HttpRequests, takeWhateverAPersonTyped) {
    LoopbackHttpServer server;
    server.answer("/kb/search", 200, "found");
    const std::string address = "/kb/search?query=";
    const std::pair<std::string, std::string> cases[] = {
        {"dark screen", "dark%20screen"},
        {"Drucker geht nicht – Papierstau", "Drucker%20geht%20nicht%20%E2%80%93%20Papierstau"},
        {"\r\nX-Evil: 1\r\n\r\nGET /evil HTTP/1.1",
         "%0D%0AX-Evil:%201%0D%0A%0D%0AGET%20/evil%20HTTP/1.1"},
        {std::string("\0\t\x7f\xff", 4), "%00%09%7F%FF"},
        {"../../x", "../../x"},
        {"a&b=c+d", "a&b=c+d"},
        {"100% %zz %41", "100%%20%zz%20%41"},
        {"dark?", "dark%3F"},
        {R"(say "<\>^`{|}'")", "say%20%22%3C%5C%3E%5E%60%7B%7C%7D'%22"},
        {"@evil.test:1//x", "@evil.test:1//x"},
        {"C# crash", "C"}};
    const auto plain = [&] {
        get(server.url(address));
        return server.lastRequest("/kb/search").headers;
    }();
    for (const auto& [text, query] : cases) {
        EXPECT_EQ(toText(get(server.url(address + text)).body), "found") << text;
        const auto request = server.requests().back();
        EXPECT_EQ(request.target, address + query);
        EXPECT_EQ(request.headers, plain) << text;
    }
    EXPECT_EQ(server.requests().size(), std::size(cases) + 1);
    EXPECT_EQ(server.connections(), 1);
}

TEST_F(HttpRequests, thatCannotBeSentFailBeforeTheyTouchTheNetwork) {
    LoopbackHttpServer server;
    server.answer("/a", 200);
    const std::vector<HttpHeaders> hostile = {{{"X-A", "1\r\nX-Injected: 2"}},
                                              {{"X-A", "1\nX-Injected: 2"}},
                                              {{"X-A\r\nX-Injected", "1"}},
                                              {{"X-A", std::string("1\0002", 3)}},
                                              {{"X-A:", "1"}},
                                              {{"", "1"}}};
    for (const auto& headers : hostile) {
        const auto response = get(server.url("/a"), headers);
        EXPECT_EQ(response.status, 0);
        EXPECT_EQ(response.error, "A header of the request is not valid.");
    }
    HttpRequest request;
    request.url = server.url("/a");
    request.method = "GET /evil HTTP/1.1\r\n";
    EXPECT_EQ(fetch(request).error, "The request's method is not valid.");
    EXPECT_EQ(get("http://127.0.0.1:1 /a").error, "The address of the request is not valid.");
    EXPECT_EQ(server.connections(), 0);
}

TEST_F(HttpRequests, runSideBySide) {
    LoopbackHttpServer server;
    server.on("/slow", [](const auto&, LoopbackConnection& connection) {
        if (connection.pause(std::chrono::milliseconds{300})) {
            connection.send(LoopbackHttpServer::response(200, "slow"));
        }
    });
    server.answer("/fast", 200, "fast");
    std::vector<std::string> order;
    for (const char* path : {"/slow", "/fast", "/fast"}) {
        HttpRequest request;
        request.url = server.url(path);
        client->send(request, [&](HttpResponse got) { order.push_back(toText(got.body)); });
    }
    EXPECT_TRUE(queue->pumpUntil([&] { return order.size() == 3; }));
    EXPECT_EQ(order, (std::vector<std::string>{"fast", "fast", "slow"}));
}

TEST_F(HttpRequests, unpackAnswersWithinTheirBound) {
    LoopbackHttpServer server;
    const std::string text(100000, 'a');
    server.answer("/zip", 200, gzip(text), {{"Content-Encoding", "gzip"}});
    server.answer("/plain", 200, text);
    server.on("/endless", [](const auto&, LoopbackConnection& connection) {
        connection.send("HTTP/1.1 200 OK\r\n\r\n");
        while (connection.send(std::string(65536, 'x'))) {
        }
        connection.close();
    });
    EXPECT_EQ(toText(get(server.url("/zip")).body), text);
    EXPECT_EQ(server.lastRequest("/zip").header("Accept-Encoding"), "gzip, deflate");
    for (const char* path : {"/zip", "/plain", "/endless"}) {
        HttpRequest request;
        request.url = server.url(path);
        request.maximumResponseBytes = text.size() - 1;
        const auto response = fetch(request);
        EXPECT_EQ(response.status, 200) << path;
        EXPECT_EQ(response.error, "The server's answer is too large.") << path;
        EXPECT_TRUE(response.body.empty());
    }
}

TEST_F(HttpRequests, blockTheReaderOnlyAsLongAsItAllows) {
    LoopbackHttpServer server;
    server.answer("/file", 200, "content");
    server.answer("/error", 500, "content");
    server.on("/stall", [](const auto&, LoopbackConnection& connection) { connection.stall(); });
    server.on("/round", [](const auto&, LoopbackConnection& connection) {
        connection.pause(std::chrono::seconds{1});
        connection.send(LoopbackHttpServer::response(302, "", {{"Location", "/round"}}));
    });
    server.answer("/large", 200, std::string(HttpClient::maximumReadBytes + 1, 'x'));
    const auto limit = std::chrono::seconds{5};
    EXPECT_EQ(toText(client->read(server.url("/file"), limit).value_or(Bytes{})), "content");
    EXPECT_FALSE(client->read(server.url("/error"), limit));
    EXPECT_FALSE(client->read("http://a b/", limit));
    EXPECT_FALSE(client->read(server.url("/large"), limit));
    const auto before = std::chrono::steady_clock::now();
    EXPECT_FALSE(client->read(server.url("/stall"), std::chrono::milliseconds{100}));
    EXPECT_FALSE(client->read(server.url("/round"), std::chrono::milliseconds{1500}));
    EXPECT_LT(std::chrono::steady_clock::now() - before, limit);
}

TEST_F(HttpRequests, toLoopbackGoPastTheProxy) {
    LoopbackHttpServer server;
    server.answer("/a", 200);
    setenv("http_proxy", "http://127.0.0.1:1", 1);
    EXPECT_EQ(get(server.url("/a")).status, 200);
    EXPECT_EQ(get("http://proxied.test/").error, "Could not connect to the server.");
    unsetenv("http_proxy");
}

}  // namespace
}  // namespace supportsdk::test
