#pragma once

#include <string>

#include "supportsdk/launcher/Sector.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Images.h"

namespace supportsdk {

struct RotatingMenuItem {
    std::string label;
    /// May be null.
    ImagePtr icon;
};

/// What the picture of one item is drawn from.
struct SUPPORTSDK_API Slice {
    Sector sector;
    RotatingMenuItem item;
    /// It is the item at the top, or the nearest to it.
    bool isSelected = false;

    /// The middle of the slice at `radius` from `centre`: on the rim, or where label and icon lie.
    [[nodiscard]] WheelPoint pointAt(WheelPoint centre, double radius) const;
};

}  // namespace supportsdk
