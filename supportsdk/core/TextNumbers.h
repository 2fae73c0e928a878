#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace supportsdk {

/// Longer numbers do not occur, and a text of megabytes is not read again for each question.
inline constexpr std::size_t maximumNumberBytes = 512;

/// What is left of the start of a text without the blanks and the plus sign in front, neither of
/// which std::from_chars() takes.
std::string_view trimmedNumber(std::string_view text);

/// The whole number at the start of a text, bounded to the type; 0 when there is none.
std::int32_t integerOfText(std::string_view text);

}  // namespace supportsdk
