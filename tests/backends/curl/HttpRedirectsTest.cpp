#include "tests/backends/curl/HttpFixture.h"

namespace supportsdk::test {
namespace {

using HttpRedirects = HttpFixture;

TEST_F(HttpRedirects, areFollowedWithTheRightMethodAndBody) {
    LoopbackHttpServer server;
    server.answer("/302", 302, "moved", {{"Location", "/end?q=a b \xc3\xa4"}});
    server.answer("/307", 307, "moved", {{"Location", "end?x=1"}});
    server.answer("/end", 200, "here");
    const auto arrived = [&](const char* path) {
        EXPECT_EQ(toText(post(server.url(path), "body", {{"X-Quorrand-Key", "k"}}).body), "here");
        const auto request = server.lastRequest("/end");
        EXPECT_EQ(request.header("X-Quorrand-Key"), "k");
        return request.method + " " + request.target + " " + request.body;
    };
    EXPECT_EQ(arrived("/302"), "GET /end?q=a%20b%20%C3%A4 ");
    EXPECT_EQ(arrived("/307"), "POST /end?x=1 body");
}

TEST_F(HttpRedirects, endSomewhere) {
    LoopbackHttpServer server;
    for (int i = 0; i < 11; ++i) {
        server.answer("/" + std::to_string(i), 302, "",
                      {{"Location", "/" + std::to_string(i + 1)}});
    }
    server.answer("/11", 200, "end");
    server.answer("/scheme", 302, "", {{"Location", "ftp://127.0.0.1/"}});
    server.answer("/nowhere", 302, "no place");
    EXPECT_EQ(toText(get(server.url("/1")).body), "end") << "ten redirects";
    const auto eleven = get(server.url("/0"));
    EXPECT_EQ(eleven.status, 302);
    EXPECT_EQ(eleven.error, "The server redirected too many times.");
    EXPECT_EQ(get(server.url("/scheme")).error,
              "The server redirected to an address that is not valid.");
    const auto nowhere = get(server.url("/nowhere"));
    EXPECT_EQ(nowhere.status, 302);
    EXPECT_EQ(toText(nowhere.body) + nowhere.error, "no place");
}

TEST_F(HttpRedirects, neverLeadFromHttpsToHttpAndLeaveConfinedHeadersBehind) {
    auto& ours = authority("ours");
    LoopbackHttpServer secure(ours.issue(here));
    LoopbackHttpServer plain;
    plain.answer("/a", 200, "clear");
    plain.answer("/up", 302, "", {{"Location", secure.url("/b")}});
    secure.answer("/down", 302, "", {{"Location", plain.url("/a")}});
    secure.answer("/b", 200, "secure");
    makeClient({ours.certificate()});
    const auto response = get(secure.url("/down"));
    EXPECT_EQ(response.status, 302);
    EXPECT_EQ(response.error, "The server redirected to an address that is not secure.");
    EXPECT_TRUE(plain.requests().empty());
    EXPECT_EQ(toText(get(plain.url("/up"), {{"X-Quorrand-Key", "k"}}).body), "secure");
    EXPECT_TRUE(plain.lastRequest("/up").hasHeader("X-Quorrand-Key"));
    EXPECT_FALSE(secure.lastRequest("/b").hasHeader("X-Quorrand-Key"));

    LoopbackHttpServer third;
    third.answer("/away", 307, "", {{"Location", plain.url("/back")}});
    plain.answer("/there", 307, "", {{"Location", third.url("/away")}});
    plain.answer("/back", 200);
    get(plain.url("/there"), {{"X-Quorrand-Token", "t"}, {"X-A", "a"}});
    EXPECT_FALSE(plain.lastRequest("/back").hasHeader("X-Quorrand-Token")) << "left for good";
    EXPECT_EQ(plain.lastRequest("/back").header("X-A"), "a");
}

}  // namespace
}  // namespace supportsdk::test
