#pragma once

#include <optional>
#include <string>
#include <vector>

#include "supportsdk/platform/Values.h"

namespace supportsdk::host {

/// A list of nothing but strings, or nothing.
std::optional<std::vector<std::string>> stringsForKey(const Json& command, const char* key);

}  // namespace supportsdk::host
