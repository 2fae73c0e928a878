#include "backends/curl/HttpHop.h"

#include <strings.h>

namespace supportsdk {
namespace {

bool startsWith(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() &&
           strncasecmp(text.data(), prefix.data(), prefix.size()) == 0;
}

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
    return std::any_of(names.begin(), names.end(), [&](std::string_view each) {
        return name.size() == each.size() && startsWith(name, each);
    });
}

/// RFC 9110, section 5.6.2.
bool isToken(std::string_view text) {
    constexpr std::string_view kSymbols = "!#$%&'*+-.^_`|~";
    return !text.empty() && std::all_of(text.begin(), text.end(), [&](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
               kSymbols.find(c) != std::string_view::npos;
    });
}

bool breaksLine(std::string_view value) {
    return value.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos;
}

/// A body that is not sent must not be described either.
bool describesBody(std::string_view name) {
    return startsWith(name, "Content-");
}

bool staysWithOrigin(std::string_view name, const std::string& confinedPrefix) {
    return (!confinedPrefix.empty() && startsWith(name, confinedPrefix)) ||
           isOneOf(name, {"Authorization", "Cookie", "Host", "Proxy-Authorization"});
}

bool becomesGet(int status, const std::string& method) {
    if (status == 303) return method != "GET" && method != "HEAD";
    return (status == 301 || status == 302) && method == "POST";
}

}  // namespace

HopOrError firstHop(const HttpRequest& request) {
    if (!isToken(request.method)) return "The request's method is not valid.";
    for (const auto& [name, value] : request.headers) {
        if (!isToken(name) || breaksLine(value)) return "A header of the request is not valid.";
    }
    auto address = HttpAddress::parse(request.url);
    if (!address) return "The address of the request is not valid.";
    return HttpHop{std::move(*address), request.method, request.headers,
                   !request.body.empty() || request.method == "POST"};
}

bool isRedirect(int status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

HopOrError followRedirect(const HttpHop& hop, int status, const std::string& location,
                          const std::string& confinedPrefix) {
    auto address = hop.address.resolve(location);
    if (!address) return "The server redirected to an address that is not valid.";
    if (hop.address.isSecure() && !address->isSecure()) {
        return "The server redirected to an address that is not secure.";
    }
    HttpHop next = hop;
    if (becomesGet(status, hop.method)) {
        next.method = "GET";
        next.sendsBody = false;
        std::erase_if(next.headers, [](const auto& each) { return describesBody(each.first); });
    }
    if (!address->hasOriginOf(hop.address)) {
        std::erase_if(next.headers, [&](const auto& each) {
            return staysWithOrigin(each.first, confinedPrefix);
        });
    }
    next.address = std::move(*address);
    return next;
}

}  // namespace supportsdk
