#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

/// Pictures by name while one theme is applied. Each name is searched once, and one picture serves
/// all entries that name it: a service may name a big one a thousand times. Main thread.
class ThemeImages {
 public:
    /// A theme that names more pictures, or shows more of their pixels, gets no further ones.
    static constexpr std::size_t maximumNames = 256;
    static constexpr std::size_t maximumBytes = std::size_t{64} * 1024 * 1024;

    explicit ThemeImages(const Appearance& appearance) : appearance_(appearance) {}

    /// Null for what is no text, unknown, or too much.
    [[nodiscard]] ImagePtr find(const Json& name);

 private:
    const Appearance& appearance_;
    std::map<std::string, ImagePtr> searched_;
    std::size_t bytes_ = 0;
};

}  // namespace supportsdk
