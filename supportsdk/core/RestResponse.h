#pragma once

#include <cstddef>

#include "supportsdk/core/Fields.h"
#include "supportsdk/platform/HttpClient.h"

namespace supportsdk {

/// A longer body counts as a failure; so does one that nests deeper than maximumJsonDepth.
inline constexpr std::size_t maximumResponseBytes = std::size_t{64} * 1024 * 1024;

/// What became of a request.
struct RestResponse {
    /// Whether a whole response came, with a status of 200 to 299 and a JSON object as its body. A
    /// 204 without a body counts as an empty object.
    bool isSuccess = false;
    /// On success the body with "status" set to the HTTP status. On failure the header fields, with
    /// "status" (0 without a response) and "message": the body is left out, so that what a person
    /// reads never comes from a broken server. Always an object of valid UTF-8.
    Json dictionary;
};

/// Pure; any thread.
RestResponse readResponse(const HttpResponse& response);

/// Whether this is the dictionary of a response whose status means success, and whose body could
/// not be read. Typed calls, which judge by the status, count it as a success.
bool isUnreadable(const Json& response);

/// What a status means, in words for a person, such as "not found".
std::string statusText(int status);

}  // namespace supportsdk
