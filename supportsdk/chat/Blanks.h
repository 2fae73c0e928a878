#pragma once

#include <string_view>

namespace supportsdk {

// `text`, in UTF-8, without what Unicode counts as white space at its ends. Any thread.

/// Line ends stay, and what stands behind them.
[[nodiscard]] std::string_view withoutOuterBlanks(std::string_view text);
[[nodiscard]] std::string_view withoutOuterBlanksAndLineEnds(std::string_view text);

}  // namespace supportsdk
