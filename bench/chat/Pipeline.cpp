#include <chrono>
#include <cstdio>
#include <thread>

#include "bench/chat/Figures.h"
#include "bench/chat/Floods.h"
#include "bench/chat/Kit.h"
#include "bench/chat/Measurements.h"
#include "bench/chat/PictureServer.h"
#include "bench/xmpp/RawStrophe.h"

namespace supportsdk::bench {

namespace {

using Clock = std::chrono::steady_clock;
using test::RawServer;

constexpr int runs = 5;
constexpr std::size_t lines = 100'000;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Microseconds for each line.
struct Cost {
    std::vector<double> wall;
    std::vector<double> streamThread;
    std::vector<double> mainThread;

    void note(std::size_t count, double seconds, double stream, double main) {
        const double each = 1e6 / static_cast<double>(count);
        wall.push_back(seconds * each);
        streamThread.push_back(stream * each);
        mainThread.push_back(main * each);
    }
};

void runPeer(const Flood& flood, Cost& cost) {
    const RawServer server(scriptOf(flood));
    RawStrophe raw(server.port());
    while (!raw.isUp()) std::this_thread::sleep_for(std::chrono::milliseconds{1});
    raw.send("<presence><x xmlns='http://jabber.org/protocol/muc'/></presence>");
    while (raw.received() < 1) std::this_thread::sleep_for(std::chrono::milliseconds{1});
    const auto before = processorSeconds(RawStrophe::threadName);
    const auto start = Clock::now();
    raw.send(startSignal);
    while (raw.received() < flood.count + 1)
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    const auto took = secondsSince(start);
    cost.note(flood.count, took, processorSeconds(RawStrophe::threadName) - before, 0);
}

std::string somePicture(const Kit& kit) {
    const auto data = kit.chat->platform->kitBundle->data("add", "png");
    require(data.has_value(), "the kit's resources");
    return {reinterpret_cast<const char*>(data->data()), data->size()};
}

/// Gives the number of pictures that were asked for.
std::size_t runKit(const Flood& flood, Cost& cost) {
    const RawServer server(scriptOf(flood));
    Kit kit;
    const PictureServer pictures(somePicture(kit));
    kit.chat->avatarRetrievalAPIBaseURL = pictures.address();
    kit.enterRoom(server.port());
    const auto streamBefore = processorSeconds("support-xmpp");
    const auto mainBefore = processorSeconds();
    const auto start = Clock::now();
    kit.chat->sendMessage("go", "ann@raw.test");
    kit.awaitLines(flood.count);
    const auto took = secondsSince(start);
    cost.note(flood.count, took, processorSeconds("support-xmpp") - streamBefore,
              processorSeconds() - mainBefore);
    return pictures.requests;
}

void compare(const Flood& flood) {
    Cost peer;
    Cost kit;
    std::size_t pictures = 0;
    for (int run = 0; run < runs; ++run) {
        runPeer(flood, peer);
        pictures = runKit(flood, kit);
    }
    const double peerRate = 1e6 / median(peer.wall);
    const double kitRate = 1e6 / median(kit.wall);
    std::printf("%s, %zu of %zu bytes, medians of %d runs\n", flood.name, flood.count, flood.bytes,
                runs);
    std::printf("  libstrophe alone  %7.0f a second; processor %.2f us a line\n", peerRate,
                median(peer.streamThread));
    std::printf(
        "  the kit           %7.0f a second; processor %.2f us on the stream's thread, "
        "%.2f us on the main thread\n",
        kitRate, median(kit.streamThread), median(kit.mainThread));
    std::printf("  ratio %.2f (limit 0.50)\n", kitRate / peerRate);
    if (pictures > 0) std::printf("  pictures asked for in the last run: %zu\n", pictures);
}

}  // namespace

void measurePipeline() {
    compare(plainFlood(lines));
    compare(historyFlood(lines));
    compare(emoticonFlood(lines));
    compare(avatarFlood(lines));
}

}  // namespace supportsdk::bench
