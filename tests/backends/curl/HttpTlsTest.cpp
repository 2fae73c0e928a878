#include <gmock/gmock.h>

#include "tests/backends/curl/HttpFixture.h"
#include "tests/support/LineProcess.h"

namespace supportsdk::test {
namespace {

using std::chrono::milliseconds;
using HttpTls = HttpFixture;

constexpr const char* kUntrusted = "The server's certificate is not trusted.";

TEST_F(HttpTls, trustsTheHostsOwnAuthorityAndNoOther) {
    auto& ours = authority("ours");
    LoopbackHttpServer good(ours.issue(here));
    LoopbackHttpServer foreign(authority("theirs").issue(here));
    LoopbackHttpServer expired(ours.issue({"expired", here.dnsNames, here.addresses,
                                           -std::chrono::hours{2}, -std::chrono::hours{1}}));
    LoopbackHttpServer otherName(ours.issue({"other", {"other.test"}}));
    for (auto* server : {&good, &foreign, &expired, &otherName}) server->answer("/a", 200, "ok");

    EXPECT_EQ(get(good.url("/a")).error, kUntrusted) << "without the authority";
    makeClient({folder.path / "missing.pem", ours.certificate()});
    EXPECT_EQ(toText(get(good.url("/a")).body), "ok");
    EXPECT_EQ(toText(get("https://localhost:" + std::to_string(good.port()) + "/a").body), "ok");
    for (auto* server : {&foreign, &expired, &otherName}) {
        const auto response = get(server->url("/a"), {{"X-Quorrand-Key", "secret"}});
        EXPECT_EQ(std::to_string(response.status) + response.error, "0" + std::string(kUntrusted));
        EXPECT_TRUE(server->requests().empty());
    }
    EXPECT_THAT(log->text(), testing::HasSubstr("missing.pem"));
    EXPECT_THAT(log->text(), testing::Not(testing::HasSubstr("secret")));
}

TEST_F(HttpTls, reportsServersThatDoNotSpeakIt) {
    LoopbackHttpServer plain;
    const auto response = get("https://127.0.0.1:" + std::to_string(plain.port()) + "/");
    EXPECT_EQ(response.error, "A secure connection to the server could not be made.");
}

TEST_F(HttpTls, speaksHttp2WhereOffered) {
    if (system("command -v nghttpd >/dev/null") != 0) GTEST_SKIP() << "needs nghttpd";
    auto& ours = authority("ours");
    const auto files = ours.issue(here);
    folder.write("file.json", R"({"two":2})");
    makeClient({ours.certificate()});
    const auto port = std::to_string(LoopbackHttpServer().port());
    const LineProcess server(
        {"nghttpd", "-a", "127.0.0.1", "-d", folder.path, port, files->key, files->certificate});
    const auto url = "https://127.0.0.1:" + port + "/file.json";
    HttpResponse response;
    for (int attempt = 0; attempt < 100 && response.status == 0; ++attempt) {
        response = get(url);
        if (response.status == 0) queue->pumpFor(milliseconds{50});
    }
    EXPECT_EQ(toText(response.body), R"({"two":2})") << response.error;
    // HTTP/2 has lower-case names only, and this server writes them so in no other version.
    EXPECT_TRUE(std::any_of(response.headers.begin(), response.headers.end(),
                            [](const auto& each) { return each.first == "content-length"; }));
    EXPECT_EQ(post(url, std::string(100000, 'x'), {{"X-Empty", ""}}).status, 200);
}

}  // namespace
}  // namespace supportsdk::test
