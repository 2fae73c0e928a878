#include "supportsdk/core/Fields.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace supportsdk {

namespace {

/// The most arrays and objects that are open at once in a text, if it is JSON.
int nestingOf(std::string_view text) {
    int depth = 0;
    int deepest = 0;
    bool isInString = false;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const char letter = text[index];
        if (isInString && letter == '\\') {
            ++index;
        } else if (letter == '"') {
            isInString = !isInString;
        } else if (!isInString && (letter == '[' || letter == '{')) {
            deepest = std::max(deepest, ++depth);
        } else if (!isInString && (letter == ']' || letter == '}')) {
            --depth;
        }
    }
    return deepest;
}

}  // namespace

const Json* valueForKey(const Json& dictionary, std::string_view key) {
    if (!dictionary.is_object()) return nullptr;
    const auto found = dictionary.find(std::string(key));
    return found == dictionary.end() ? nullptr : &*found;
}

std::optional<std::string> stringForKey(const Json& dictionary, std::string_view key) {
    const auto* value = valueForKey(dictionary, key);
    if (!value || !value->is_string()) return std::nullopt;
    return value->get<std::string>();
}

std::optional<double> numberForKey(const Json& dictionary, std::string_view key) {
    const auto* value = valueForKey(dictionary, key);
    if (!value) return std::nullopt;
    if (value->is_boolean()) return value->get<bool>() ? 1.0 : 0.0;
    if (!value->is_number()) return std::nullopt;
    return value->get<double>();
}

std::optional<std::int64_t> integerForKey(const Json& dictionary, std::string_view key) {
    using Limits = std::numeric_limits<std::int64_t>;
    const auto* value = valueForKey(dictionary, key);
    if (!value) return std::nullopt;
    if (value->is_boolean()) return value->get<bool>() ? 1 : 0;
    if (!value->is_number()) return std::nullopt;
    if (value->is_number_unsigned()) {
        const auto number = value->get<std::uint64_t>();
        return number > static_cast<std::uint64_t>(Limits::max())
                   ? Limits::max()
                   : static_cast<std::int64_t>(number);
    }
    if (value->is_number_integer()) return value->get<std::int64_t>();
    const double number = value->get<double>();
    if (std::isnan(number)) return std::nullopt;
    if (number >= 9223372036854775807.0) return Limits::max();
    if (number <= -9223372036854775808.0) return Limits::min();
    return static_cast<std::int64_t>(number);
}

bool boolForKey(const Json& dictionary, std::string_view key) {
    const auto* value = valueForKey(dictionary, key);
    if (!value) return false;
    if (value->is_boolean()) return value->get<bool>();
    return value->is_number() && value->get<double>() != 0.0;
}

const Json& arrayForKey(const Json& dictionary, std::string_view key) {
    static const Json empty = Json::array();
    const auto* value = valueForKey(dictionary, key);
    return value && value->is_array() ? *value : empty;
}

const Json& dictionaryForKey(const Json& dictionary, std::string_view key) {
    static const Json empty = Json::object();
    const auto* value = valueForKey(dictionary, key);
    return value && value->is_object() ? *value : empty;
}

std::optional<Json> parseJson(std::string_view text) {
    // The parser's own callback could watch the depth, but with one, an object of many objects
    // takes quadratic time.
    if (nestingOf(text) > maximumJsonDepth) return std::nullopt;
    auto value = Json::parse(text, nullptr, false);
    if (value.is_discarded()) return std::nullopt;
    return value;
}

bool isUtf8(std::string_view text) {
    try {
        (void)Json(text).dump();
        return true;
    } catch (const Json::exception&) {
        return false;
    }
}

std::string dumpJson(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace supportsdk
