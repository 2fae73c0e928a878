#include "service/Options.h"

#include <charconv>

namespace supportsdk::service {

const char usage[] =
    R"(support-service: a local stand-in for the support cloud, with chat rooms

usage: support-service [options]

  --data DIR              keeps its state there (default: a fresh folder, removed at the end)
  --port N                port for HTTP (default: chosen by the system)
  --https-port N          port for HTTPS (default: chosen by the system)
  --seed FILE             content of a new state instead of the built-in one
  --http | --https        which address the configuration names (default: https)
  --integration ID        whose configuration comes first (default: the seed's first one)
  --print-configuration   prints the bare configuration for a host instead of the ready line, and
                          the authority's file on standard error; if a service runs on --data DIR
                          already, prints its configuration and ends
  --help

Prints one line of JSON when it is ready, then runs until SIGTERM or SIGINT.
)";

namespace {

bool readPort(const std::string& text, std::uint16_t& port) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), port);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

/// True when `name` takes a value and `value` is a good one.
bool readValue(const std::string& name, const std::string& value, Options& options) {
    if (value.empty()) return false;
    if (name == "--port") return readPort(value, options.httpPort);
    if (name == "--https-port") return readPort(value, options.httpsPort);
    if (name == "--data") {
        options.data = value;
    } else if (name == "--seed") {
        options.seed = value;
    } else if (name == "--integration") {
        options.integration = value;
    } else {
        return false;
    }
    return true;
}

bool readFlag(const std::string& name, Options& options) {
    if (name == "--http" || name == "--https") {
        options.secure = name == "--https";
    } else if (name == "--print-configuration") {
        options.printConfiguration = true;
    } else if (name == "--help") {
        options.help = true;
    } else {
        return false;
    }
    return true;
}

}  // namespace

std::optional<Options> readOptions(const std::vector<std::string>& arguments,
                                   std::string& problem) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (readFlag(arguments[i], options)) continue;
        const auto value = i + 1 < arguments.size() ? arguments[i + 1] : std::string();
        if (!readValue(arguments[i], value, options)) {
            problem = "cannot make sense of " + arguments[i] + " " + value;
            return std::nullopt;
        }
        ++i;
    }
    return options;
}

}  // namespace supportsdk::service
