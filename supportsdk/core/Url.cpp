#include "supportsdk/core/Url.h"

#include <cstddef>

namespace supportsdk {

namespace {

constexpr std::string_view allowed =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~:/?#[]@!$&'()*+,;=%";

}  // namespace

bool isUrl(std::string_view text) {
    constexpr std::string_view hexadecimal = "0123456789ABCDEFabcdef";
    if (text.empty() || text.find_first_not_of(allowed) != std::string_view::npos) return false;
    for (auto at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1)) {
        const auto digits = text.substr(at + 1, 2);
        if (digits.size() < 2 || digits.find_first_not_of(hexadecimal) != std::string_view::npos)
            return false;
    }
    return true;
}

}  // namespace supportsdk
