#pragma once

#include "supportsdk/core/Support.h"

namespace supportsdk {

/// How the calls of the diagnostics choose their callback: "status" of integer value 200, as a
/// number or as a text, is success; anything else is failure; a response that is no object, or that
/// could not be read, is neither.
RestCallback byIntegerStatus(RestCallback success, RestCallback failure);

}  // namespace supportsdk
