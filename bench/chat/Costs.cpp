#include <cstdio>

#include "bench/chat/Figures.h"
#include "bench/chat/Floods.h"
#include "bench/chat/Kit.h"
#include "bench/chat/Measurements.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/platform/Stanza.h"

namespace supportsdk::bench {

namespace {

constexpr int runs = 5;
constexpr std::size_t oneThousand = 1'000;
constexpr std::size_t longChat = 50'000;

/// Processor time in microseconds of each line, by thousands.
std::vector<double> growTo(std::size_t count) {
    Kit kit;
    // Every chat begins with a heap that has nothing to spare.
    (void)residentKiB();
    std::vector<double> costs;
    for (std::size_t first = 0; first < count; first += oneThousand) {
        const auto stanzas = plainStanzas(first, oneThousand);
        const auto start = processorSeconds();
        for (const auto& stanza : stanzas) kit.chat->handleReceivedMessage(stanza);
        costs.push_back((processorSeconds() - start) * 1e6 / oneThousand);
    }
    require(kit.chat->viewModel->messages().size() == count, "growth");
    return costs;
}

/// What a line's texts occupy, by their sizes.
struct Texts {
    double body = 0;
    double xml = 0;
    double rest = 0;

    void add(const QuorrandChatMessage& line) {
        const auto size = [](const std::optional<std::string>& text) {
            return text ? static_cast<double>(text->size()) : 0.0;
        };
        body += size(line.text);
        xml += size(line.xml);
        rest += size(line.id) + size(line.type) + size(line.from) + size(line.fromName) +
                size(line.fromMention) + size(line.fromNickname);
    }
};

}  // namespace

void measureGrowth() {
    std::vector<double> early;
    std::vector<double> late;
    for (int run = 0; run < runs; ++run) {
        const auto costs = growTo(longChat);
        early.insert(early.end(), costs.begin(), costs.begin() + 3);
        late.insert(late.end(), costs.end() - 3, costs.end());
    }
    std::printf(
        "a line more, stanza to list, processor time, medians of %d runs\n"
        "  with up to %zu lines: %.2f us; with %zu: %.2f us; ratio %.2f (limit 1.50)\n",
        runs, 3 * oneThousand, median(early), longChat, median(late), median(late) / median(early));
}

void measureMemory() {
    const auto flood = plainFlood(longChat);
    const test::RawServer server(scriptOf(flood));
    Kit kit;
    kit.enterRoom(server.port());
    const auto before = residentKiB();
    kit.chat->sendMessage("go", "ann@raw.test");
    kit.awaitLines(longChat);
    const auto added = residentKiB() - before;
    Texts texts;
    for (const auto& line : kit.chat->viewModel->messages()) texts.add(*line);
    const double each = 1.0 / (1024 * static_cast<double>(longChat));
    std::printf("resident memory added by %zu lines of %zu bytes: %.1f MiB, %.2f KiB a line\n",
                longChat, flood.bytes, added / 1024, added / static_cast<double>(longChat));
    std::printf(
        "  of which text %.2f KiB (stanza %.2f, body %.2f, id and names %.2f), the line "
        "itself %.2f KiB\n",
        (texts.xml + texts.body + texts.rest) * each, texts.xml * each, texts.body * each,
        texts.rest * each, sizeof(QuorrandChatMessage) / 1024.0);
}

}  // namespace supportsdk::bench
