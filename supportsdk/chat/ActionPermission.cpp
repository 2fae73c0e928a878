#include "supportsdk/chat/ActionPermission.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

namespace supportsdk {

namespace {

/// Nothing for a number of more than 64 bits: cut to them it would hold all of them, and grant.
std::optional<std::uint64_t> bits(const Json& value) {
    constexpr double lowest = -9223372036854775808.0;
    constexpr double tooLarge = 18446744073709551616.0;
    if (value.is_boolean()) return value.get<bool>() ? 1 : 0;
    if (value.is_number_unsigned()) return value.get<std::uint64_t>();
    if (value.is_number_integer()) return static_cast<std::uint64_t>(value.get<std::int64_t>());
    const auto* number = value.get_ptr<const double*>();
    if (!number || !(*number >= lowest && *number < tooLarge)) return std::nullopt;
    return *number < 0 ? static_cast<std::uint64_t>(static_cast<std::int64_t>(*number))
                       : static_cast<std::uint64_t>(*number);
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
