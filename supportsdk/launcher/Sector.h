#pragma once

#include "supportsdk/platform/Export.h"

namespace supportsdk {

// Angles of a RotatingMenu are radians: 0 at the top, growing clockwise.

/// A place in a picture: x to the right, y downwards.
struct WheelPoint {
    double x = 0;
    double y = 0;
};

/// The same direction within [0, 2π). The angle must be finite.
[[nodiscard]] SUPPORTSDK_API double normalizedAngle(double angle);
/// The same direction within [-π, π): the shorter way round. The angle must be finite.
[[nodiscard]] SUPPORTSDK_API double shortestAngle(double angle);

/// The part of the wheel that one item covers.
struct SUPPORTSDK_API Sector {
    /// Where it begins; below 0 for a sector that lies across the top.
    double minimum = 0;
    /// Within [0, 2π).
    double middle = 0;
    /// Where it ends; beyond 2π for a sector that lies across the top.
    double maximum = 0;

    /// Of any finite angle; the sector's end belongs to its neighbour.
    [[nodiscard]] bool contains(double angle) const;
};

}  // namespace supportsdk
