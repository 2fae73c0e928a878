#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "supportsdk/core/LowerCased.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// Readings of a single value that may be any JSON. They never throw, and look at no more than the
/// start of a text for a number in it.

/// The string, or "".
const std::string& textOf(const Json& value);
/// A number or boolean.
bool isNumeric(const Json& value);
/// The number; that at the start of a text, blanks before it skipped and whatever the locale; else
/// 0.
double numberOf(const Json& value);
/// The low 32 bits of a number's whole part; 0 for what is no number.
std::int32_t lowIntegerOf(const Json& value);
/// The truth of a number, or of a text: one that begins with a digit other than 0, or with one of
/// "YyTt".
bool truthOf(const Json& value);
/// The string; a number as decimal text, booleans as 1 and 0; "" for anything else.
std::string decimalText(const Json& value);

}  // namespace supportsdk
