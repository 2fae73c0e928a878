#pragma once

#include <optional>
#include <string>

#include "supportsdk/platform/Images.h"
#include "supportsdk/platform/Values.h"

// How reports write colours and pictures.

namespace supportsdk::host {

/// "#rrggbb", or "#rrggbbaa" for a colour that is not opaque.
[[nodiscard]] std::string textOf(const Color& color);

/// Sets `key` unless there is no colour.
void putColor(Json& fields, const char* key, const std::optional<Color>& color);

/// Whether it was found, and its size in pixels.
[[nodiscard]] Json describeImage(const ImagePtr& image);

}  // namespace supportsdk::host
