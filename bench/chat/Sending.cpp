#include <cstdio>

#include "bench/chat/Figures.h"
#include "bench/chat/Floods.h"
#include "bench/chat/Kit.h"
#include "bench/chat/Measurements.h"
#include "bench/xmpp/Arrival.h"
#include "bench/xmpp/RawStrophe.h"

namespace supportsdk::bench {

namespace {
constexpr int sends = 2000;
}

void measureSending() {
    const std::string text = "Could you try that once more, please?";
    const std::string xml = "<message id='01234567-89AB-4CDE-8F01-23456789ABCD' to='" +
                            std::string(roomJid) + "' type='groupchat'><body>" + text +
                            "</body></message>";
    Arrival rawArrival;
    Arrival kitArrival;
    const Flood silence{"", 0, 0, ""};
    const test::RawServer rawServer(test::RawServer::loginScript(), false,
                                    [&](std::string_view heard) { rawArrival.heard(heard); });
    const test::RawServer kitServer(scriptOf(silence), false,
                                    [&](std::string_view heard) { kitArrival.heard(heard); });
    RawStrophe raw(rawServer.port());
    while (!raw.isUp()) std::this_thread::sleep_for(std::chrono::milliseconds{1});
    Kit kit;
    kit.enterRoom(kitServer.port());
    kit.chat->sendMessage("go", "ann@raw.test");

    std::vector<double> rawTimes;
    std::vector<double> kitTimes;
    for (int number = 0; number < sends; ++number) {
        rawTimes.push_back(rawArrival.sendAndWait([&] { raw.send(xml); }));
        kitTimes.push_back(kitArrival.sendAndWait([&] {
            require(kit.chat->sendGroupchatMessage(text, false) == ChatSend::sent, "send");
        }));
    }
    const auto peer = printTimes("libstrophe on a thread of its own", rawTimes);
    const auto own = printTimes("sendGroupchatMessage of the kit", kitTimes);
    std::printf("  the kit takes %.0f us more (limit 200)\n", own - peer);
}

}  // namespace supportsdk::bench
