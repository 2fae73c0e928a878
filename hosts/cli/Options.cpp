#include "hosts/cli/Options.h"

namespace supportsdk::host {

std::optional<Options> Options::parse(const std::vector<std::string>& arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); i += 2) {
        if (i + 1 == arguments.size() || arguments[i + 1].empty()) return std::nullopt;
        const auto& name = arguments[i];
        const std::filesystem::path value = arguments[i + 1];
        if (name == "--data") {
            options.data = value;
        } else if (name == "--bundle") {
            options.bundle = value;
        } else if (name == "--ca") {
            options.authorities.push_back(value);
        } else if (name == "--log") {
            options.log = value;
        } else {
            return std::nullopt;
        }
    }
    return options;
}

}  // namespace supportsdk::host
