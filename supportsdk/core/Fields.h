#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// Typed reads of foreign JSON. They never throw: a missing key, a value of another type, and a
/// `dictionary` that is no object all count as missing.

/// The value if it is a string.
SUPPORTSDK_API std::optional<std::string> stringForKey(const Json& dictionary,
                                                       std::string_view key);
/// The value if it is a number; true and false are the numbers 1 and 0.
SUPPORTSDK_API std::optional<double> numberForKey(const Json& dictionary, std::string_view key);
/// The value as a whole number, fractions cut, bounded to the range of the type.
SUPPORTSDK_API std::optional<std::int64_t> integerForKey(const Json& dictionary,
                                                         std::string_view key);
/// The truth of a number or boolean; false for everything else, the string "true" included.
SUPPORTSDK_API bool boolForKey(const Json& dictionary, std::string_view key);
/// The value if it is an array, else an empty array. Valid as long as `dictionary`.
SUPPORTSDK_API const Json& arrayForKey(const Json& dictionary, std::string_view key);
/// The value if it is an object, else an empty object. Valid as long as `dictionary`.
SUPPORTSDK_API const Json& dictionaryForKey(const Json& dictionary, std::string_view key);
/// The value of any type, JSON null included; null pointer when the key is missing.
SUPPORTSDK_API const Json* valueForKey(const Json& dictionary, std::string_view key);

/// Deeper nesting than this is refused by parseJson().
inline constexpr int maximumJsonDepth = 128;

/// Parses JSON (RFC 8259). Nothing on a syntax error, invalid UTF-8 or nesting beyond
/// maximumJsonDepth.
SUPPORTSDK_API std::optional<Json> parseJson(std::string_view text);

SUPPORTSDK_API bool isUtf8(std::string_view text);

/// Compact JSON. Bytes that are not UTF-8 become U+FFFD, so it never fails.
SUPPORTSDK_API std::string dumpJson(const Json& value);

}  // namespace supportsdk
