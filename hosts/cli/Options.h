#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace supportsdk::host {

struct Options {
    std::filesystem::path data;
    std::filesystem::path bundle;
    std::vector<std::filesystem::path> authorities;
    /// Standard error when empty.
    std::filesystem::path log;

    /// What the command line says; nothing when it cannot be used.
    static std::optional<Options> parse(const std::vector<std::string>& arguments);
};

inline constexpr const char* usage =
    "usage: support-host [--data DIR] [--bundle DIR] [--ca FILE] [--log FILE]\n"
    "  --data DIR    where user defaults live\n"
    "  --bundle DIR  the host application's main bundle: configuration files, Info.json\n"
    "  --ca FILE     one more trusted certificate authority (PEM)\n"
    "  --log FILE    the diagnostic lines; standard error without it\n";

}  // namespace supportsdk::host
