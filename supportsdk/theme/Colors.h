#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// `rgb` as 0xRRGGBB, bits above 23 ignored; `alpha` from 0 to 1, bounded.
[[nodiscard]] constexpr Color colorFromRGB(std::uint32_t rgb, double alpha = 1.0) {
    const auto channel = [rgb](int shift) { return static_cast<std::uint8_t>(rgb >> shift); };
    const double bounded = alpha > 0.0 ? (alpha < 1.0 ? alpha : 1.0) : 0.0;
    // NOLINTNEXTLINE(bugprone-incorrect-roundings): std::lround is no constant expression
    return {channel(16), channel(8), channel(0), static_cast<std::uint8_t>(bounded * 255 + 0.5)};
}

/// The colour of a text such as "#EF5E0D": the lowest 24 bits of the hexadecimal number behind the
/// "#", opaque. Blanks and "0x" before the digits are skipped, the first character that is no digit
/// ends the number, and a number of more than 64 bits counts as the largest one. Nothing without a
/// "#" in the first place or without a digit.
[[nodiscard]] SUPPORTSDK_API std::optional<Color> colorWithHexString(std::string_view text);

}  // namespace supportsdk
