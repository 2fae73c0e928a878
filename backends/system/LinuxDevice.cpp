#include "backends/system/LinuxDevice.h"

#include <sys/utsname.h>

#include <algorithm>
#include <fstream>

namespace supportsdk {

namespace {

constexpr std::size_t longestFact = 128;

std::string clean(std::string text) {
    std::erase_if(text, [](char byte) { return byte < ' ' || byte > '~'; });
    text.erase(0, text.find_first_not_of(' '));
    text.erase(text.find_last_not_of(' ') + 1);
    return text.substr(0, longestFact);
}

std::string firstLine(const std::filesystem::path& file) {
    std::ifstream in(file);
    std::string line;
    std::getline(in, line);
    return clean(line);
}

/// The value of `key` in a file of shell assignments (os-release(5)), without quotes.
std::string assignment(const std::filesystem::path& file, const std::string& key) {
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        if (!line.starts_with(key + "=")) continue;
        std::string value = line.substr(key.size() + 1);
        std::erase_if(value, [](char byte) { return byte == '"' || byte == '\''; });
        return clean(value);
    }
    return {};
}

std::string firstKnown(std::initializer_list<std::string> candidates) {
    for (const auto& candidate : candidates) {
        if (!candidate.empty()) return candidate;
    }
    return {};
}

std::string kernelRelease() {
    utsname name{};
    return uname(&name) == 0 ? clean(name.release) : std::string{};
}

}  // namespace

std::string LinuxDevice::systemVersion() const {
    read();
    return systemVersion_;
}

std::string LinuxDevice::model() const {
    read();
    return model_;
}

void LinuxDevice::read() const {
    std::call_once(once_, [this] {
        systemVersion_ =
            firstKnown({assignment(root_ / "etc/os-release", "VERSION_ID"),
                        assignment(root_ / "usr/lib/os-release", "VERSION_ID"), kernelRelease()});
        model_ = firstKnown({firstLine(root_ / "sys/class/dmi/id/product_name"),
                             firstLine(root_ / "proc/device-tree/model")});
    });
}

}  // namespace supportsdk
