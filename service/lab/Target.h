#pragma once

#include "service/rest/Desk.h"

namespace supportsdk::service {

/// The chat that a request of the lab is about: named by "comm", or by "issue" through its issue.
std::optional<Json> targetChat(const Desk& desk, const Json& names);

}  // namespace supportsdk::service
