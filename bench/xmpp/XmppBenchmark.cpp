// Figures of the XMPP stream: wake-ups in an idle room, latency of a send, and stanzas a second,
// the latter two against bare libstrophe in the same run.

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>

#include "backends/strophe/StropheStreamFactory.h"
#include "bench/xmpp/Arrival.h"
#include "bench/xmpp/RawStrophe.h"
#include "service/prosody/ProsodyServer.h"
#include "tests/backends/strophe/RawServer.h"
#include "tests/support/LoopMainQueue.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk::bench {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using test::LoopMainQueue;
using test::RawServer;

struct Silence : Log {
    void write(std::string_view) override {}
};

void require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "failed: %s\n", what);
    std::exit(1);
}

// A stream of the kit's that is up.
struct Kit {
    Kit(const std::shared_ptr<LoopMainQueue>& loop, StropheOptions options,
        const XmppStreamOptions& where) {
        options.mainQueue = loop;
        options.log = std::make_shared<Silence>();
        stream = StropheStreamFactory(std::move(options)).makeStream();
        XmppStream::Callbacks callbacks;
        callbacks.received = [this](auto stanza) {
            ++received;
            joined = joined || stanza->child("subject");
        };
        stream->connect(where, std::move(callbacks));
        require(loop->pumpUntil([&] { return stream->isAuthenticated(); }), "log-in");
    }

    std::unique_ptr<XmppStream> stream;
    std::size_t received = 0;
    bool joined = false;
};

// How often each thread of this process has gone to sleep and been woken, by thread name and id.
std::map<std::string, long> sleeps() {
    std::map<std::string, long> counts;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string name;
        std::ifstream(task.path() / "comm") >> name;
        std::ifstream status(task.path() / "status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with("voluntary_ctxt_switches:"))
                counts[name + " " + task.path().filename().string()] =
                    std::stol(line.substr(line.find(':') + 1));
        }
    }
    return counts;
}

void measureIdleRoom(std::chrono::seconds duration) {
    const test::TemporaryFolder folder;
    const auto authority = service::CertificateAuthority::create(folder.path);
    service::ProsodyOptions options{folder.path / "server"};
    options.certificate = authority->issue({"server", {options.domain}});
    service::ProsodyServer server(options);
    require(server.start() && server.registerAccount("ann", "p"), "server");
    const auto loop = std::make_shared<LoopMainQueue>();
    StropheOptions trust;
    trust.extraAuthorities = {authority->certificate()};
    Kit kit(loop, trust, {"127.0.0.1", server.c2sPort(), "ann@support.test", "p"});
    kit.stream->send("<presence to='" + server.room("r") +
                     "/ann'><x xmlns='http://jabber.org/protocol/muc'/></presence>");
    require(loop->pumpUntil([&] { return kit.joined; }), "join");
    loop->pumpFor(milliseconds{500});

    const auto before = sleeps();
    loop->pumpFor(duration);
    const auto after = sleeps();
    for (const auto& [thread, count] : after) {
        if (!thread.starts_with("support-xmpp")) continue;
        std::printf("idle in a room over TLS, %lld s: %ld wake-ups of the stream's thread\n",
                    static_cast<long long>(duration.count()), count - before.at(thread));
    }
}

void measureLatency() {
    const std::string line =
        "<message type='groupchat' to='case-1@rooms.raw.test' id='1'><body>Could you try that "
        "once more, please?</body></message>";
    Arrival kitArrival;
    Arrival rawArrival;
    const RawServer kitServer(RawServer::loginScript(), false,
                              [&](std::string_view text) { kitArrival.heard(text); });
    const RawServer rawServer(RawServer::loginScript(), false,
                              [&](std::string_view text) { rawArrival.heard(text); });
    const auto loop = std::make_shared<LoopMainQueue>();
    StropheOptions clear;
    clear.allowClearTextOnLoopback = true;
    Kit kit(loop, clear, {"127.0.0.1", kitServer.port(), "ann@raw.test/desk", "p"});
    RawStrophe raw(rawServer.port());
    require(loop->pumpUntil([&] { return raw.isUp(); }), "peer's log-in");

    std::vector<double> kitTimes;
    std::vector<double> rawTimes;
    for (int i = 0; i < 2000; ++i) {
        rawTimes.push_back(rawArrival.sendAndWait([&] { raw.send(line); }));
        kitTimes.push_back(kitArrival.sendAndWait([&] { kit.stream->send(line); }));
    }
    printTimes("bare libstrophe", rawTimes);
    printTimes("the kit", kitTimes);
}

void measureReceiving() {
    constexpr std::size_t count = 100000;
    std::string flood;
    const std::string line =
        "<message from='case-1@rooms.raw.test/tess' type='groupchat' id='1'>"
        "<body>" +
        std::string(170, 'x') + "</body></message>";
    for (std::size_t i = 0; i < count; ++i) flood += line;
    auto script = RawServer::loginScript();
    script.push_back({"<presence/>", flood});

    const auto loop = std::make_shared<LoopMainQueue>();
    const auto report = [&](const char* name, Clock::time_point start) {
        const std::chrono::duration<double> took = Clock::now() - start;
        std::printf("received, %s: %.0f stanzas of %zu bytes a second\n", name,
                    static_cast<double>(count) / took.count(), line.size());
    };
    {
        const RawServer server(script);
        RawStrophe raw(server.port());
        require(loop->pumpUntil([&] { return raw.isUp(); }), "peer's log-in");
        const auto start = Clock::now();
        raw.send("<presence/>");
        while (raw.received() < count) std::this_thread::sleep_for(milliseconds{1});
        report("bare libstrophe, counted on its thread", start);
    }
    const RawServer server(script);
    StropheOptions clear;
    clear.allowClearTextOnLoopback = true;
    Kit kit(loop, clear, {"127.0.0.1", server.port(), "ann@raw.test/desk", "p"});
    const auto start = Clock::now();
    kit.stream->send("<presence/>");
    require(loop->pumpUntil([&] { return kit.received >= count; }, std::chrono::seconds{60}),
            "flood");
    report("the kit, as stanzas on the main thread", start);
}

}  // namespace
}  // namespace supportsdk::bench

int main() {
    supportsdk::bench::measureIdleRoom(std::chrono::seconds{10});
    supportsdk::bench::measureLatency();
    supportsdk::bench::measureReceiving();
}
