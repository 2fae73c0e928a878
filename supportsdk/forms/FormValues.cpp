#include "supportsdk/forms/FormValues.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "supportsdk/core/Fields.h"
#include "supportsdk/core/TextNumbers.h"

namespace supportsdk {

namespace {

double numberOfText(std::string_view text) {
    const auto digits = trimmedNumber(text);
    // Words are no numbers, also those that from_chars() knows: "infinity", "nan".
    const auto first = digits.find_first_not_of('-');
    if (digits.find_first_of("0123456789.") != first) return 0.0;
    double number = 0.0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

bool isTrueText(std::string_view text) {
    text = text.substr(0, maximumNumberBytes);
    const auto first = text.find_first_not_of(" \t\r\n+-0");
    return first != std::string_view::npos &&
           std::string_view("123456789YyTt").find(text[first]) != std::string_view::npos;
}

}  // namespace

const std::string& textOf(const Json& value) {
    static const std::string empty;
    return value.is_string() ? value.get_ref<const std::string&>() : empty;
}

bool isNumeric(const Json& value) {
    return value.is_number() || value.is_boolean();
}

double numberOf(const Json& value) {
    if (value.is_boolean()) return value.get<bool>() ? 1.0 : 0.0;
    return value.is_number() ? value.get<double>() : numberOfText(textOf(value));
}

std::int32_t lowIntegerOf(const Json& value) {
    if (value.is_boolean()) return value.get<bool>() ? 1 : 0;
    if (!value.is_number()) return 0;
    if (!value.is_number_float()) return static_cast<std::int32_t>(value.get<std::int64_t>());
    constexpr double beyond = 9223372036854775808.0;
    const auto number = value.get<double>();
    if (std::isnan(number)) return 0;
    if (number >= beyond)
        return static_cast<std::int32_t>(std::numeric_limits<std::int64_t>::max());
    if (number < -beyond) return 0;
    return static_cast<std::int32_t>(static_cast<std::int64_t>(number));
}

bool truthOf(const Json& value) {
    return isNumeric(value) ? numberOf(value) != 0.0 : isTrueText(textOf(value));
}

std::string decimalText(const Json& value) {
    if (!isNumeric(value)) return textOf(value);
    if (value.is_boolean()) return value.get<bool>() ? "1" : "0";
    if (!value.is_number_float()) return dumpJson(value);
    constexpr double exactBelow = 1e15;
    const auto number = value.get<double>();
    if (std::trunc(number) != number || std::abs(number) >= exactBelow) return dumpJson(value);
    return std::to_string(static_cast<std::int64_t>(number));
}

}  // namespace supportsdk
