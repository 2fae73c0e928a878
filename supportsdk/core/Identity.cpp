#include "supportsdk/core/Identity.h"

#include "supportsdk/core/Fields.h"

namespace supportsdk {

IdentityValue::IdentityValue(std::optional<std::string> text) {
    if (text) value_ = *std::move(text);
}

IdentityValue::IdentityValue(const Json* value) {
    if (value) value_ = *value;
}

std::string IdentityValue::text() const {
    if (!value_) return "(null)";
    if (value_->is_null()) return "<null>";
    return value_->is_string() ? value_->get<std::string>() : dumpJson(*value_);
}

}  // namespace supportsdk
