#include "supportsdk/core/FormParameters.h"

#include <string_view>

#include "supportsdk/core/Fields.h"
#include "supportsdk/core/Url.h"

namespace supportsdk {

namespace {

std::optional<std::string> valueText(const Json& value) {
    if (value.is_null()) return std::nullopt;
    if (value.is_string()) return value.get<std::string>();
    if (value.is_boolean()) return value.get<bool>() ? "1" : "0";
    return dumpJson(value);
}

void append(std::vector<FormParameter>& list, const std::string& name, const Json& value) {
    if (value.is_object()) {
        for (const auto& [member, inner] : value.items())
            append(list, std::string(name).append("[").append(member).append("]"), inner);
    } else if (value.is_array()) {
        for (const auto& inner : value) append(list, name + "[]", inner);
    } else {
        list.emplace_back(name, valueText(value));
    }
}

}  // namespace

std::vector<FormParameter> formParameters(const Json& parameters) {
    std::vector<FormParameter> list;
    if (!parameters.is_object()) return list;
    for (const auto& [name, value] : parameters.items()) append(list, name, value);
    return list;
}

std::string queryString(const Json& parameters) {
    constexpr std::string_view plain = "/?";
    std::string query;
    for (const auto& [name, value] : formParameters(parameters)) {
        if (!query.empty()) query += '&';
        query += percentEncoded(name, plain);
        if (value) query += '=' + percentEncoded(*value, plain);
    }
    return query;
}

}  // namespace supportsdk
