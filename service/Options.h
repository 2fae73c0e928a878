#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace supportsdk::service {

struct Options {
    /// Empty: a fresh folder that goes away at the end.
    std::filesystem::path data;
    /// 0 lets the system choose.
    std::uint16_t httpPort = 0;
    std::uint16_t httpsPort = 0;
    /// Empty: the one that is built in.
    std::filesystem::path seed;
    bool printConfiguration = false;
    /// Whether the configuration names the HTTPS address.
    bool secure = true;
    /// Whose configuration is printed; empty for the first one.
    std::string integration;
    bool help = false;
};

/// Nothing for arguments that make no sense; why stands in `problem` then.
std::optional<Options> readOptions(const std::vector<std::string>& arguments, std::string& problem);

extern const char usage[];

}  // namespace supportsdk::service
