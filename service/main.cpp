#include <cstdio>

#include "service/EndSignals.h"
#include "service/Service.h"
#include "supportsdk/core/Fields.h"

namespace {

using namespace supportsdk;
using namespace supportsdk::service;

int complain(const std::string& problem, int status) {
    std::fprintf(stderr, "support-service: %s\n", problem.c_str());
    return status;
}

void print(const Json& ready, const Options& options) {
    const auto text =
        options.printConfiguration ? ready.at("configuration").dump(2) : dumpJson(ready);
    std::printf("%s\n", text.c_str());
    std::fflush(stdout);
    if (options.printConfiguration)
        std::fprintf(stderr, "caFile: %s\n", ready.at("caFile").get<std::string>().c_str());
}

/// Another service holds the folder: all there is to do is to say what it said.
int speakForOther(const Options& options) {
    const auto word = DataFolder::readWord(options.data);
    const auto ready = word ? parseJson(*word) : std::nullopt;
    if (!options.printConfiguration || !ready)
        return complain("another service runs on this folder, or it cannot be written", 1);
    print(*ready, options);
    return 0;
}

int run(const Options& options, const EndSignals& ends) {
    auto folder = DataFolder::take(options.data);
    if (!folder) return speakForOther(options);
    Service service(std::move(folder));
    std::string problem;
    const bool started = service.start(
        options, [&ends] { return ends.hasCome(); }, problem);
    if (ends.hasCome()) return 0;
    if (!started) return complain(problem, 1);
    print(service.readyLine(), options);
    ends.wait();
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    const EndSignals ends;

    std::string problem;
    const auto options = readOptions({arguments + 1, arguments + count}, problem);
    if (!options) return complain(problem + "\n\n" + usage, 2);
    if (options->help) {
        std::fputs(usage, stdout);
        return 0;
    }
    return run(*options, ends);
}
