#include "supportsdk/launcher/Slice.h"

#include <cmath>

namespace supportsdk {

WheelPoint Slice::pointAt(WheelPoint centre, double radius) const {
    return {centre.x + radius * std::sin(sector.middle),
            centre.y - radius * std::cos(sector.middle)};
}

}  // namespace supportsdk
