#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "supportsdk/platform/Registration.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

using HttpHeaders = std::vector<std::pair<std::string, std::string>>;

struct HttpRequest {
    std::string method = "GET";
    /// Absolute http or https address. Bytes that may not stand in a path or query (blanks, quotes,
    /// control characters, all but ASCII), and a second "?", are sent as percent escapes; a "%"
    /// stays as it is, and a "#" begins a fragment, which is not sent. Scheme, host and port are
    /// never repaired: an address that does not parse fails unsent.
    std::string url;
    /// Sent as they are. A request with a line break or a zero byte in a name or value fails
    /// unsent.
    HttpHeaders headers;
    Bytes body;
    /// Headers whose name begins with this (any case) are left out when a redirect leads to another
    /// scheme, host or port. "" protects none.
    std::string confinedHeaderPrefix;
    /// A longer response body fails the request.
    std::size_t maximumResponseBytes = std::size_t{64} * 1024 * 1024;
    /// Fails when no byte moves, either way, for this long, the time to connect included.
    std::chrono::milliseconds idleTimeout = std::chrono::seconds{60};
    /// Fails when it has not ended after this long, however lively.
    std::chrono::milliseconds totalTimeout = std::chrono::minutes{10};
};

struct HttpResponse {
    /// 0 when there was no response at all.
    int status = 0;
    /// Of the last response, in order; names as the server wrote them.
    HttpHeaders headers;
    Bytes body;
    /// Why no complete response came, in words for a person; "" when one came, whatever its status.
    std::string error;
};

/// Sends HTTP requests (RFC 9110). Up to 10 redirects are followed, never from https to http; 301,
/// 302 and 303 turn a POST into a GET. TLS at most 1.3; certificates and host names are verified.
class HttpClient {
 public:
    using Completion = std::function<void(HttpResponse)>;

    virtual ~HttpClient() = default;

    /// Starts a request. `completion` runs exactly once on the main thread, never inside this call,
    /// also after a failure. When the client is destroyed first, it does not run. Main thread only.
    virtual void send(HttpRequest request, Completion completion) = 0;

    /// What read() takes at most.
    static constexpr std::size_t maximumReadBytes = std::size_t{8} * 1024 * 1024;

    /// The body at `url` with a plain GET, blocking the caller for at most `limit`, redirects
    /// included; nothing unless a response of 200 to 299 came in whole. Any thread.
    [[nodiscard]] virtual std::optional<Bytes> read(const std::string& url,
                                                    std::chrono::milliseconds limit) = 0;
};

}  // namespace supportsdk
