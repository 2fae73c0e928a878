#pragma once

#include <string_view>

namespace supportsdk {

/// Whether `text` can be a URL or a relative reference: not empty, only characters that RFC 3986
/// allows, and every "%" followed by two hexadecimal digits.
bool isUrl(std::string_view text);

}  // namespace supportsdk
