#include "supportsdk/proactive/dump/DumpSources.h"

#include <sys/stat.h>

#include <filesystem>
#include <set>

namespace supportsdk {

namespace {

std::string lastName(const std::string& path) {
    const auto end = path.find_last_not_of('/');
    if (end == std::string::npos) return "";
    const auto slash = path.rfind('/', end);
    const auto start = slash == std::string::npos ? 0 : slash + 1;
    return path.substr(start, end + 1 - start);
}

std::string nameOf(const std::string& path) {
    auto name = lastName(path);
    if (name != "." && name != "..") return name;
    std::error_code error;
    return lastName(std::filesystem::canonical(path, error).string());
}

bool isThere(const std::string& path) {
    struct stat status {};
    return path.find('\0') == std::string::npos && stat(path.c_str(), &status) == 0;
}

}  // namespace

std::vector<DumpSource> dumpSources(const std::vector<std::string>& paths, SkippedNames& skipped) {
    std::vector<DumpSource> sources;
    std::set<std::string> names;
    for (const auto& path : paths) {
        auto name = isThere(path) ? nameOf(path) : "";
        if (name.empty() || !names.insert(name).second)
            skipped.add(path);
        else
            sources.push_back({path, std::move(name)});
    }
    return sources;
}

}  // namespace supportsdk
