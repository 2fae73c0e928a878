#include "supportsdk/core/TextNumbers.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace supportsdk {

std::string_view trimmedNumber(std::string_view text) {
    text = text.substr(0, maximumNumberBytes);
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    return text;
}

std::int32_t integerOfText(std::string_view text) {
    using Limits = std::numeric_limits<std::int32_t>;
    const auto digits = trimmedNumber(text);
    std::int32_t number = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (result.ec != std::errc::result_out_of_range) return number;
    return digits.starts_with('-') ? Limits::min() : Limits::max();
}

}  // namespace supportsdk
