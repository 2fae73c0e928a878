#include "supportsdk/chat/ActionPermission.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "supportsdk/core/Fields.h"

namespace supportsdk {

namespace {

std::optional<std::int64_t> bits(const Json& value) {
    if (!value.is_number() && !value.is_boolean()) return std::nullopt;
    return integerForKey(Json{{"bits", value}}, "bits");
}

bool holds(const Json& names, std::string_view wanted) {
    return std::any_of(names.begin(), names.end(), [wanted](const Json& name) {
        const auto* text = name.get_ptr<const std::string*>();
        return text && *text == wanted;
    });
}

bool shareName(std::string_view joined, const Json& names) {
    while (true) {
        const auto comma = joined.find(',');
        if (holds(names, joined.substr(0, comma))) return true;
        if (comma == std::string_view::npos) return false;
        joined.remove_prefix(comma + 1);
    }
}

}  // namespace

bool isPermitted(const Json* permissions, const std::optional<Json>& userPermissions) {
    if (!permissions || permissions->is_null()) return true;
    const auto* names = permissions->get_ptr<const std::string*>();
    if (names && names->empty()) return true;
    if (!userPermissions) return false;
    if (names) return userPermissions->is_array() && shareName(*names, *userPermissions);
    const auto required = bits(*permissions);
    const auto granted = bits(*userPermissions);
    return required && granted && (*required == 0 || (*required & *granted) != 0);
}

}  // namespace supportsdk
