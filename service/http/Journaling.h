#pragma once

#include <cstdint>

#include "service/http/Call.h"
#include "service/state/Journal.h"

namespace supportsdk::service {

/// Enters a request: "method", "path", "query", "headers", "body" (the first 64 KiB), and the sizes
/// of "files" by name. Its number.
std::uint64_t enterRequest(Journal& journal, const Call& call);

/// Enters what became of it: "request" (the number), "path", "status" (0 when there was no answer).
void enterAnswer(Journal& journal, std::uint64_t request, const std::string& path,
                 const Answer& answer);

}  // namespace supportsdk::service
