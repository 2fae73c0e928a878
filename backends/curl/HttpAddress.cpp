#include "backends/curl/HttpAddress.h"

#include <arpa/inet.h>
#include <curl/curl.h>

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

namespace supportsdk {
namespace {

using UrlHandle = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;

UrlHandle parsed(const std::string& text, unsigned int flags) {
    UrlHandle url(curl_url(), curl_url_cleanup);
    if (url && curl_url_set(url.get(), CURLUPART_URL, text.c_str(), flags) != CURLUE_OK) {
        url.reset();
    }
    return url;
}

std::string part(CURLU* url, CURLUPart which, unsigned int flags = 0) {
    char* text = nullptr;
    if (curl_url_get(url, which, &text, flags) != CURLUE_OK) return {};
    const std::unique_ptr<char, decltype(&curl_free)> owner(text, curl_free);
    return text;
}

/// Of RFC 3986, section 2. A percent sign stays as it is, whatever follows: it may begin an escape.
bool isAllowed(char c) {
    constexpr std::string_view kForbidden = "\"<>\\^`{|}";
    return c > 0x20 && c < 0x7f && kForbidden.find(c) == std::string_view::npos;
}

/// Where path, query or fragment begin.
std::size_t endOfAuthority(std::string_view reference) {
    const auto colon = reference.find_first_of(":/?#");
    const bool hasScheme = colon != std::string_view::npos && reference[colon] == ':';
    const std::size_t start = hasScheme ? colon + 1 : 0;
    if (!reference.substr(start).starts_with("//")) return start;
    return std::min(reference.find_first_of("/?#", start + 2), reference.size());
}

/// `reference` with percent escapes for the bytes that may not stand in a path or query, so that no
/// line break reaches the wire. Nothing when there are such bytes in scheme or authority, where an
/// escape would name another server.
std::optional<std::string> escaped(std::string_view reference) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const auto end = endOfAuthority(reference);
    std::string text(reference.substr(0, end));
    if (!std::all_of(text.begin(), text.end(), isAllowed)) return std::nullopt;
    bool isInQuery = false;
    bool isInFragment = false;
    for (const char c : reference.substr(end)) {
        // A second one may stand in a query, but there are servers that refuse it.
        const bool isSecondMark = c == '?' && isInQuery && !isInFragment;
        isInFragment = isInFragment || c == '#';
        isInQuery = isInQuery || c == '?';
        if (isAllowed(c) && !isSecondMark) {
            text += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        text += {'%', kDigits[byte >> 4U], kDigits[byte & 0xFU]};
    }
    return text;
}

/// What stands between "//" and the path. libcurl forgives a wrong number of slashes and decodes
/// escapes in host names; neither may pass for an address that somebody meant.
bool hasPlainAuthority(std::string_view text) {
    const auto colon = text.find(':');
    if (colon == std::string_view::npos || text.substr(colon, 3) != "://") return false;
    const auto rest = text.substr(colon + 3);
    const auto authority = rest.substr(0, rest.find_first_of("/?#"));
    return !authority.empty() && authority.find_first_of("@%") == std::string_view::npos;
}

}  // namespace

std::optional<HttpAddress> HttpAddress::parse(const std::string& raw) {
    auto text = escaped(raw);
    if (!text || !hasPlainAuthority(*text)) return std::nullopt;
    const auto url = parsed(*text, CURLU_PATH_AS_IS | CURLU_DISALLOW_USER);
    if (!url) return std::nullopt;
    HttpAddress address;
    address.text_ = std::move(*text);
    address.scheme_ = part(url.get(), CURLUPART_SCHEME);
    address.host_ = part(url.get(), CURLUPART_HOST);
    address.port_ = part(url.get(), CURLUPART_PORT, CURLU_DEFAULT_PORT);
    for (char& c : address.host_) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    if (address.scheme_ != "http" && address.scheme_ != "https") return std::nullopt;
    if (address.host_.empty()) return std::nullopt;
    return address;
}

std::optional<HttpAddress> HttpAddress::resolve(const std::string& raw) const {
    const auto escapedReference = escaped(raw);
    if (!escapedReference || escapedReference->empty()) return std::nullopt;
    const auto& reference = *escapedReference;
    // libcurl takes "http:x" for a host; a scheme without an authority is no http address.
    const auto colon = reference.find(':');
    const bool isAbsolute = colon < reference.find_first_of("/?#");
    if (isAbsolute) return parse(reference);
    const auto url = parsed(text_, CURLU_DISALLOW_USER);
    if (!url || curl_url_set(url.get(), CURLUPART_URL, reference.c_str(), 0) != CURLUE_OK) {
        return std::nullopt;
    }
    return parse(part(url.get(), CURLUPART_URL));
}

bool HttpAddress::isLoopback() const {
    std::string_view host = host_;
    if (host.ends_with('.')) host.remove_suffix(1);
    if (host == "localhost" || host.ends_with(".localhost")) return true;
    in_addr v4{};
    if (inet_pton(AF_INET, std::string(host).c_str(), &v4) == 1) {
        return (ntohl(v4.s_addr) >> 24) == 127;
    }
    in6_addr v6{};
    if (!host.starts_with('[') || !host.ends_with(']')) return false;
    host = host.substr(1, host.size() - 2);
    return inet_pton(AF_INET6, std::string(host).c_str(), &v6) == 1 && IN6_IS_ADDR_LOOPBACK(&v6);
}

bool HttpAddress::hasOriginOf(const HttpAddress& other) const {
    return scheme_ == other.scheme_ && host_ == other.host_ && port_ == other.port_;
}

}  // namespace supportsdk
