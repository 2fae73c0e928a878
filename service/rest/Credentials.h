#pragma once

#include <optional>

#include "service/http/Call.h"
#include "service/state/Store.h"

namespace supportsdk::service {

/// Finds the calling integration by the X-Quorrand headers and enters it into the call; a 401 when
/// it is unknown or a credential is wrong or missing. An integration without "partnerToken" needs
/// no token.
std::optional<Answer> authenticate(Call& call, const Store& store);

}  // namespace supportsdk::service
