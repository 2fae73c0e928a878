#pragma once

#include <string>
#include <string_view>

namespace supportsdk {

/// `text` with `replacement` in every place of `wanted`, which is looked for only in what stood
/// there before; `text` itself when `wanted` is empty. Takes time in proportion to the result.
inline std::string replaceAll(std::string_view text, std::string_view wanted,
                              std::string_view replacement) {
    if (wanted.empty()) return std::string(text);
    std::string replaced;
    std::size_t done = 0;
    for (auto at = text.find(wanted); at != std::string_view::npos; at = text.find(wanted, done)) {
        replaced.append(text.substr(done, at - done)).append(replacement);
        done = at + wanted.size();
    }
    return replaced.append(text.substr(done));
}

}  // namespace supportsdk
