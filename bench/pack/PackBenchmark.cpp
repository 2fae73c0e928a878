// What pack.py measures of the kit, and how it measures anything: one operation, or another
// program, a process.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <map>

#include "supportsdk/proactive/DCTar.h"
#include "supportsdk/proactive/Dump.h"

namespace {

using namespace supportsdk;

using Operation = bool (*)(const std::string& source, const std::string& target);

bool tar(const std::string& source, const std::string& target) {
    return DCTar::tarFileAtPath(source, target, nullptr);
}

bool untar(const std::string& source, const std::string& target) {
    return DCTar::untarFileAtPath(source, target, nullptr);
}

bool deflate(const std::string& source, const std::string& target) {
    const auto file = FileHandle::forReadingAtPath(source);
    return file && DCTar::fileDeflate(*file, true, target);
}

bool inflate(const std::string& source, const std::string& target) {
    const auto file = FileHandle::forReadingAtPath(source);
    return file && DCTar::fileInflate(*file, true, target);
}

bool isWhole(const DumpResult& result) {
    if (!result.message.empty()) std::fprintf(stderr, "%s\n", result.message.c_str());
    return result.end == DumpResult::End::done && result.skipped.empty();
}

bool pack(const std::string& source, const std::string& target) {
    return isWhole(packDump({source}, target));
}

bool unpack(const std::string& source, const std::string& target) {
    return isWhole(unpackDump(source, target));
}

const std::map<std::string, Operation> operations = {{"tar", tar},         {"untar", untar},
                                                     {"deflate", deflate}, {"inflate", inflate},
                                                     {"pack", pack},       {"unpack", unpack}};

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Runs a program, and writes its seconds by the clock and on the processor, and its peak of
/// resident memory in KiB, into the file `figures`. Python could do that too, but a child inherits
/// the peak of the process that started it.
int measure(const char* figures, char** command) {
    const auto start = std::chrono::steady_clock::now();
    const auto child = fork();
    if (child == 0) {
        execvp(command[0], command);
        std::fprintf(stderr, "%s: %s\n", command[0], std::strerror(errno));
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child || status != 0) return 1;
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    auto* const file = std::fopen(figures, "w");
    if (!file) return 1;
    std::fprintf(file, "%f %f %ld\n", wall.count(),
                 seconds(usage.ru_utime) + seconds(usage.ru_stime), usage.ru_maxrss);
    return std::fclose(file) == 0 ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
    if (count > 3 && std::strcmp(arguments[1], "measure") == 0) {
        return measure(arguments[2], arguments + 3);
    }
    const auto known = count == 4 ? operations.find(arguments[1]) : operations.end();
    if (known == operations.end()) {
        std::fputs(
            "usage: bench_pack tar|untar|deflate|inflate|pack|unpack SOURCE TARGET\n"
            "       bench_pack measure FIGURES PROGRAM...\n",
            stderr);
        return 2;
    }
    return known->second(arguments[2], arguments[3]) ? 0 : 1;
}
