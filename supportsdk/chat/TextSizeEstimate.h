#pragma once

#include "supportsdk/chat/ChatLineParts.h"
#include "supportsdk/chat/StyledText.h"

namespace supportsdk {

/// The room that `text` takes when it is wrapped at `maximumWidth`, without a font at hand: lines
/// of 1.2 times the font size, letters of 0.55 times that, letters beyond Latin, Greek and Cyrillic
/// of the whole, pictures as high as a line. Lines break at blanks, and in words that are longer
/// than a line. More than 50 lines count as 50, so that an endless text costs no more than a long
/// one.
[[nodiscard]] ChatCellSize estimatedTextSize(const StyledText& text, double fontSize,
                                             double maximumWidth);

}  // namespace supportsdk
