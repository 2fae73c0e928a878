#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace supportsdk {

using Bytes = std::vector<std::byte>;

/// JSON values. Foreign JSON is read through the typed readers of core/Fields.h only: they never
/// throw.
using Json = nlohmann::json;

inline Bytes toBytes(std::string_view text) {
    const auto* first = reinterpret_cast<const std::byte*>(text.data());
    return {first, first + text.size()};
}

inline std::string toText(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// A colour with 8 bits a channel.
struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 255;

    bool operator==(const Color&) const = default;
};

}  // namespace supportsdk
