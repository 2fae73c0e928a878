// Figures of the chat: from bytes on a socket to lines in the list, what a line costs in a long
// chat, what it weighs, and how long a line takes to leave. Arguments choose among them.

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "bench/chat/Measurements.h"

int main(int count, char** arguments) {
    using namespace supportsdk::bench;
    const std::vector<std::string> wanted(arguments + 1, arguments + count);
    const std::map<std::string, void (*)()> all{{"growth", measureGrowth},
                                                {"memory", measureMemory},
                                                {"pipeline", measurePipeline},
                                                {"sending", measureSending}};
    for (const auto& [name, measure] : all) {
        if (wanted.empty() || std::find(wanted.begin(), wanted.end(), name) != wanted.end())
            measure();
    }
}
