#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// Names of an object's properties with the text of their values, in their order.
using PropertyList = std::vector<std::pair<std::string, std::string>>;

/// A text of the object for logs and debuggers: a line a property between "<Class> {" and
/// "} </Class>". `properties` is called while the depth counts one more, so that objects described
/// inside it are indented below this one. The depth is the process's: objects that are described
/// on two threads at once may indent each other.
std::string qd_classPropertiesAndValues(std::string_view className,
                                        const std::function<PropertyList()>& properties);

/// The text of one value; "(null)" for what is absent.
std::string debugText(const std::optional<std::string>& value);
std::string debugText(const std::optional<std::int64_t>& value);
std::string debugText(const std::optional<double>& value);
std::string debugText(const std::optional<Json>& value);
std::string debugText(bool value);

}  // namespace supportsdk
