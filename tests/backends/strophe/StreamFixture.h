#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "backends/strophe/StreamEnd.h"
#include "backends/strophe/StropheStreamFactory.h"
#include "service/prosody/ProsodyServer.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/LoopMainQueue.h"
#include "tests/support/SharedLog.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk::test {

using std::chrono::milliseconds;

/// A stream and all that it reported.
struct WatchedStream {
    std::unique_ptr<XmppStream> stream;
    std::chrono::steady_clock::time_point started;
    milliseconds endedAfter{-1};
    std::vector<std::string> authenticated;
    std::vector<std::shared_ptr<const Stanza>> received;
    std::vector<XmppStreamEnd> ends;

    void connect(const XmppStreamOptions& options) {
        started = std::chrono::steady_clock::now();
        XmppStream::Callbacks callbacks;
        callbacks.authenticated = [this](const std::string& jid) { authenticated.push_back(jid); };
        callbacks.received = [this](auto stanza) { received.push_back(std::move(stanza)); };
        callbacks.ended = [this](const XmppStreamEnd& end) {
            ends.push_back(end);
            endedAfter = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() -
                                                                  started);
        };
        stream->connect(options, std::move(callbacks));
    }

    [[nodiscard]] const Stanza* find(const std::string& part) const {
        for (const auto& stanza : received) {
            if (stanza->xml().find(part) != std::string::npos) return stanza.get();
        }
        return nullptr;
    }
};

/// A main queue, a log, and streams over them.
class StreamTest : public testing::Test {
 protected:
    std::unique_ptr<WatchedStream> makeStream(std::vector<std::filesystem::path> authorities,
                                              bool clearText = false) {
        StropheStreamFactory factory({queue, log, std::move(authorities), clearText});
        auto watched = std::make_unique<WatchedStream>();
        watched->stream = factory.makeStream();
        return watched;
    }

    [[nodiscard]] bool awaitUp(const WatchedStream& stream) {
        return queue->pumpUntil(
                   [&] { return !stream.authenticated.empty() || !stream.ends.empty(); },
                   patience) &&
               (stream.ends.empty() || printEnd(stream.ends[0]));
    }

    static bool printEnd(const XmppStreamEnd& end) {
        ADD_FAILURE() << nameOf(end.loss) << " " << end.condition << ": " << end.description;
        return false;
    }

    [[nodiscard]] bool awaitEnd(const WatchedStream& stream) {
        return queue->pumpUntil([&] { return !stream.ends.empty(); }, patience);
    }

    /// Sanitizers on a busy machine are slow.
    static constexpr std::chrono::seconds patience{30};
    std::shared_ptr<LoopMainQueue> queue = std::make_shared<LoopMainQueue>();
    std::shared_ptr<SharedLog> log = std::make_shared<SharedLog>();
};

/// With a Prosody whose certificate is good, and two accounts.
class ProsodyStreamTest : public StreamTest {
 protected:
    void SetUp() override {
        authority = service::CertificateAuthority::create(folder.path);
        ASSERT_TRUE(authority);
        service::ProsodyOptions options{folder.path / "server"};
        options.certificate = authority->issue({"server", {options.domain}});
        server = std::make_unique<service::ProsodyServer>(options);
        ASSERT_TRUE(server->start());
        ASSERT_TRUE(server->registerAccount("ann", password));
        ASSERT_TRUE(server->registerAccount("tess", password));
    }

    std::unique_ptr<WatchedStream> connect(const std::string& jid) {
        auto stream = makeStream({authority->certificate()});
        stream->connect(optionsFor(jid));
        return stream;
    }

    [[nodiscard]] XmppStreamOptions optionsFor(const std::string& jid) const {
        return {"127.0.0.1", server->c2sPort(), jid, password, std::chrono::seconds{10}};
    }

    TemporaryFolder folder;
    const std::string password = "pass-WORD-7";
    std::unique_ptr<service::CertificateAuthority> authority;
    std::unique_ptr<service::ProsodyServer> server;
};

}  // namespace supportsdk::test
