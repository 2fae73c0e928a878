#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "tests/backends/curl/HttpFixture.h"

namespace supportsdk::test {
namespace {

using std::chrono::milliseconds;
using HttpTls = HttpFixture;

constexpr const char* kUntrusted = "The server's certificate is not trusted.";

TEST_F(HttpTls, trustsTheHostsOwnAuthorityAndNoOther) {
    const TestAuthority ours;
    const TestAuthority theirs("Other authority");
    const TestAuthority impostors;
    LoopbackHttpServer good(ours.serverContext());
    LoopbackHttpServer foreign(theirs.serverContext());
    LoopbackHttpServer impostor(impostors.serverContext());
    LoopbackHttpServer expired(ours.serverContext(CertificateFlaw::expired));
    LoopbackHttpServer otherName(ours.serverContext(CertificateFlaw::otherName));
    for (auto* server : {&good, &foreign, &impostor, &expired, &otherName})
        server->answer("/a", 200, "ok");

    EXPECT_EQ(get(good.url("/a")).error, kUntrusted) << "without the authority";
    makeClient({folder.path / "missing.pem", write("ours.pem", ours.pem())});
    EXPECT_EQ(toText(get(good.url("/a")).body), "ok");
    EXPECT_EQ(toText(get("https://localhost:" + std::to_string(good.port()) + "/a").body), "ok");
    for (auto* server : {&foreign, &expired, &otherName}) {
        const auto response = get(server->url("/a"), {{"X-Quorrand-Key", "secret"}});
        EXPECT_EQ(std::to_string(response.status) + response.error, "0" + std::string(kUntrusted));
        EXPECT_TRUE(server->requests().empty());
    }
    EXPECT_NE(get(impostor.url("/a")).error, "") << "a known name does not make up for the key";
    EXPECT_TRUE(impostor.requests().empty());
    EXPECT_THAT(log->text(), testing::HasSubstr("missing.pem"));
    EXPECT_THAT(log->text(), testing::Not(testing::HasSubstr("secret")));
}

TEST_F(HttpTls, reportsServersThatDoNotSpeakIt) {
    LoopbackHttpServer plain;
    const auto response = get("https://127.0.0.1:" + std::to_string(plain.port()) + "/");
    EXPECT_EQ(response.error, "A secure connection to the server could not be made.");
}

/// nghttpd in a child process, on a port of the system's choice.
class Http2Server {
 public:
    Http2Server(const std::filesystem::path& folder, int port) {
        child_ = fork();
        if (child_ != 0) return;
        const int silence = open("/dev/null", O_RDWR | O_CLOEXEC);
        dup2(silence, 1);
        dup2(silence, 2);
        execlp("nghttpd", "nghttpd", "-a", "127.0.0.1", "-d", folder.c_str(),
               std::to_string(port).c_str(), (folder / "key.pem").c_str(),
               (folder / "certificate.pem").c_str(), nullptr);
        _exit(127);
    }
    ~Http2Server() {
        kill(child_, SIGKILL);
        waitpid(child_, nullptr, 0);
    }
    Http2Server(const Http2Server&) = delete;
    Http2Server& operator=(const Http2Server&) = delete;

 private:
    pid_t child_ = -1;
};

int freePort() {
    return LoopbackHttpServer().port();
}

TEST_F(HttpTls, speaksHttp2WhereOffered) {
    if (system("command -v nghttpd >/dev/null") != 0) GTEST_SKIP() << "needs nghttpd";
    const TestAuthority authority;
    const auto files = authority.serverFiles();
    write("certificate.pem", files.certificate);
    write("key.pem", files.key);
    write("file.json", R"({"two":2})");
    makeClient({write("authority.pem", authority.pem())});
    const int port = freePort();
    const Http2Server server(folder.path, port);
    const auto url = "https://127.0.0.1:" + std::to_string(port) + "/file.json";
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
