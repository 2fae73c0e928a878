#include "supportsdk/theme/Colors.h"

#include <charconv>
#include <limits>

namespace supportsdk {

namespace {

/// What follows the blanks and the "0x" that a number may begin with. Without a digit behind it
/// the "0" of "0x" is the number.
std::string_view withoutPrefix(std::string_view text) {
    constexpr std::string_view digits = "0123456789abcdefABCDEF";
    const auto first = text.find_first_not_of(" \t\n\v\f\r");
    text.remove_prefix(first == std::string_view::npos ? text.size() : first);
    const bool prefixed = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X') &&
                          digits.find(text[2]) != std::string_view::npos;
    if (prefixed) text.remove_prefix(2);
    return text;
}

}  // namespace

std::optional<Color> colorWithHexString(std::string_view text) {
    if (!text.starts_with('#')) return std::nullopt;
    const auto digits = withoutPrefix(text.substr(1));
    std::uint64_t number = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
    if (result.ec == std::errc::invalid_argument) return std::nullopt;
    if (result.ec == std::errc::result_out_of_range)
        number = std::numeric_limits<std::uint64_t>::max();
    return colorFromRGB(static_cast<std::uint32_t>(number));
}

}  // namespace supportsdk
