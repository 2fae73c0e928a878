#pragma once

#include <string>
#include <string_view>

namespace supportsdk {

/// Whether `text` can be a URL or a relative reference: not empty, only characters that RFC 3986
/// allows, and every "%" followed by two hexadecimal digits.
bool isUrl(std::string_view text);

/// Whether `address` names something on the web: http or https, and something behind that.
/// Addresses come from the service and from strangers, and "file" or "javascript" would reach
/// further than a web page may.
bool isWebAddress(std::string_view address);

/// `text` with every byte as a percent escape but those that RFC 3986 leaves unreserved and those
/// in `plain`.
std::string percentEncoded(std::string_view text, std::string_view plain = {});

}  // namespace supportsdk
