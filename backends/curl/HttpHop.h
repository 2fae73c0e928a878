#pragma once

#include <string>
#include <variant>

#include "backends/curl/HttpAddress.h"
#include "supportsdk/platform/HttpClient.h"

namespace supportsdk {

/// One exchange of the chain that redirects make of a request: what goes out, and where to.
struct HttpHop {
    HttpAddress address;
    std::string method;
    HttpHeaders headers;
    bool sendsBody = false;
};

/// A hop, or why there is none, in words for a person.
using HopOrError = std::variant<HttpHop, std::string>;

/// The first exchange of `request`; refuses what must not reach the wire.
[[nodiscard]] HopOrError firstHop(const HttpRequest& request);

/// True for the statuses that name another place for the same thing.
[[nodiscard]] bool isRedirect(int status);

/// Where a redirect leads from `hop` (RFC 9110, section 15.4). `confinedPrefix` names the headers
/// that stay with the origin they were meant for.
[[nodiscard]] HopOrError followRedirect(const HttpHop& hop, int status, const std::string& location,
                                        const std::string& confinedPrefix);

}  // namespace supportsdk
