#include "supportsdk/launcher/Sector.h"

#include <cmath>
#include <numbers>

namespace supportsdk {

namespace {
constexpr double turn = 2 * std::numbers::pi;
}  // namespace

double normalizedAngle(double angle) {
    const double rest = std::fmod(angle, turn);
    const double positive = rest < 0 ? rest + turn : rest;
    // The smallest of negative angles is rounded up to a whole turn.
    // And -0 is none of the promised angles.
    return positive < turn ? positive + 0.0 : 0;
}

double shortestAngle(double angle) {
    const double positive = normalizedAngle(angle);
    return positive < std::numbers::pi ? positive : positive - turn;
}

bool Sector::contains(double angle) const {
    return normalizedAngle(angle - minimum) < maximum - minimum;
}

}  // namespace supportsdk
