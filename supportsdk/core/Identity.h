#pragma once

#include <optional>
#include <string>

#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// One identifier of the customer. It comes from the service unchecked, so it may be unknown
/// (null), the JSON null object, or a value; and the JSON null object counts as set.
class IdentityValue {
 public:
    IdentityValue() = default;
    IdentityValue(std::optional<std::string> text);  // NOLINT: reads like the value
    explicit IdentityValue(const Json* value);       // null pointer: unknown

    [[nodiscard]] bool isSet() const { return value_.has_value(); }
    [[nodiscard]] bool isJsonNull() const { return value_ && value_->is_null(); }
    /// Neither unknown nor the JSON null object.
    [[nodiscard]] bool hasValue() const { return value_ && !value_->is_null(); }

    /// As it goes into a request body; JSON null when unknown.
    [[nodiscard]] Json json() const { return value_.value_or(Json()); }
    /// As it goes into a path: the text of a string, else the JSON text; "(null)" when unknown and
    /// "<null>" for the JSON null object, which is what formatting has always made of them.
    [[nodiscard]] std::string text() const;

    bool operator==(const IdentityValue&) const = default;

 private:
    std::optional<Json> value_;
};

/// Who the kit acts for.
struct Identity {
    IdentityValue membersId;
    IdentityValue membersUsersId;
    IdentityValue membersLocationsId;
    IdentityValue membersDevicesId;
};

}  // namespace supportsdk
