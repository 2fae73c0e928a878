#pragma once

#include <optional>

#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// Whether the user may press a button that requires `permissions` (null pointer: the button
/// requires nothing). Numbers are sets of 64 bits and go with numbers, where 0 requires nothing; a
/// text of names joined by commas goes with an array of names; one in common is enough. "" and JSON
/// null require nothing. Whatever does not go together is refused. Any thread.
[[nodiscard]] bool isPermitted(const Json* permissions, const std::optional<Json>& userPermissions);

}  // namespace supportsdk
