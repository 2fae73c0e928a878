#pragma once

#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// Where the badge lies in the picture of a button: a square in the top right corner, measured in
/// the button's own unit from its top left corner.
struct BadgeGeometry {
    double x = 0;
    double y = 0;
    double side = 0;
    double cornerRadius = 0;
};

/// The label is centred in the square, and shrinks to fit.
inline constexpr Color badgeColor{255, 0, 0};
inline constexpr Color badgeTextColor{255, 255, 255};

/// A button without a width has a badge without a side.
constexpr BadgeGeometry badgeGeometry(double buttonWidth) {
    const double side = buttonWidth > 0 ? buttonWidth / 3.0 : 0;
    return {buttonWidth > 0 ? buttonWidth - side : 0, 0, side, side / 2};
}

}  // namespace supportsdk
