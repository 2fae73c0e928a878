#pragma once

#include <curl/curl.h>

#include <string>

namespace supportsdk {

/// What went wrong, in words for a person.
[[nodiscard]] std::string describeTransferError(CURLcode code);

}  // namespace supportsdk
