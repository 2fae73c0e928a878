#include <unistd.h>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <sstream>

#include <thread>

#include "service/EndSignals.h"
#include "service/technician/Technician.h"

namespace {

using namespace supportsdk::service;

constexpr char usage[] =
    R"(support-technician: answers by itself in the chats of a local support-service

usage: support-technician --lab URL [--script FILE]

Ends on SIGTERM or SIGINT, or when the service has been gone for ten seconds.
)";

std::optional<Script> scriptFrom(const std::string& file) {
    if (file.empty()) return Script::standard();
    std::ifstream in(file);
    std::ostringstream text;
    text << in.rdbuf();
    return in ? Script::read(text.str()) : std::nullopt;
}

int work(const std::string& lab, const std::string& scriptFile, const EndSignals& ends) {
    const auto script = scriptFrom(scriptFile);
    if (!script) {
        std::fprintf(stderr, "support-technician: %s is no script\n", scriptFile.c_str());
        return 2;
    }
    Technician technician(lab, *script);
    std::thread worker([&] {
        technician.run(std::chrono::seconds{10});
        kill(getpid(), SIGTERM);
    });
    ends.wait();
    technician.stop();
    worker.join();
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    const EndSignals ends;

    std::string lab;
    std::string script;
    for (int i = 1; i + 1 < count; i += 2) {
        if (std::string(arguments[i]) == "--lab") lab = arguments[i + 1];
        if (std::string(arguments[i]) == "--script") script = arguments[i + 1];
    }
    if (lab.empty()) {
        std::fputs(usage, stderr);
        return 2;
    }
    return work(lab, script, ends);
}
