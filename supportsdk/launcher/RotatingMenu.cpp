#include "supportsdk/launcher/RotatingMenu.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace supportsdk {

namespace {

using Seconds = std::chrono::duration<double>;

constexpr double fullTurn = 2 * std::numbers::pi;
/// Of the radius.
constexpr double deadCentre = 0.1;
/// What a finger did before that says nothing of how it let go.
constexpr std::chrono::milliseconds velocityWindow{100};
constexpr std::size_t maximumSamples = 64;
/// Radians a second: six turns, beyond which the eye sees no items.
constexpr double maximumVelocity = 6 * fullTurn;
/// The time in which friction takes a coasting wheel to 1/e of its speed.
constexpr Seconds frictionTime{0.5};
/// Radians a second at which the nearest item begins to pull.
constexpr double pullingVelocity = 0.5;
/// 1/s, of the critically damped spring by which an item pulls itself to the top.
constexpr double springRate = 20;
/// Until what is left of the way cannot be seen: below 1/10,000 of it.
constexpr std::chrono::milliseconds pullingTime{600};

/// How far a coasting wheel gets.
double coastedAngle(double velocity, Seconds time) {
    return velocity * frictionTime.count() * -std::expm1(-time / frictionTime);
}

std::chrono::nanoseconds coastingTime(double velocity) {
    const double ratio = std::abs(velocity) / pullingVelocity;
    if (ratio <= 1) return {};
    return std::chrono::duration_cast<std::chrono::nanoseconds>(frictionTime * std::log(ratio));
}

/// How far a critically damped spring is from its rest.
double springOffset(double offset, double velocity, Seconds time) {
    const double pulled = offset + (velocity + springRate * offset) * time.count();
    return pulled * std::exp(-springRate * time.count());
}

}  // namespace

std::shared_ptr<RotatingMenu> RotatingMenu::create() {
    return std::shared_ptr<RotatingMenu>(new RotatingMenu);
}

void RotatingMenu::setItems(std::vector<RotatingMenuItem> items) {
    items_ = std::move(items);
    drag_.reset();
    turn_.reset();
    angle_ = 0;
}

double RotatingMenu::step() const {
    return fullTurn / static_cast<double>(items_.size());
}

double RotatingMenu::restingAngle(std::size_t index) const {
    return normalizedAngle(-step() * static_cast<double>(index));
}

double RotatingMenu::angle() const {
    if (!turn_) return angle_;
    const auto& turn = *turn_;
    if (turn.elapsed < turn.coasting)
        return normalizedAngle(turn.angle + coastedAngle(turn.velocity, turn.elapsed));
    const auto pulling = turn.elapsed - turn.coasting;
    return normalizedAngle(restingAngle(turn.item) +
                           springOffset(turn.offset, turn.offsetVelocity, pulling));
}

std::size_t RotatingMenu::nearestItem(double way) const {
    const auto steps = std::llround(normalizedAngle(way) / step());
    return static_cast<std::size_t>(steps) % items_.size();
}

std::optional<std::size_t> RotatingMenu::selectedIndex() const {
    return items_.empty() ? std::nullopt : std::optional(nearestItem(-angle()));
}

std::optional<Slice> RotatingMenu::slice(std::size_t index) const {
    if (index >= items_.size()) return std::nullopt;
    const double middle = normalizedAngle(angle() + step() * static_cast<double>(index));
    const Sector sector{middle - step() / 2, middle, middle + step() / 2};
    return Slice{sector, items_[index], index == selectedIndex()};
}

/// Nothing for the dead centre, and for coordinates that are no numbers.
std::optional<double> RotatingMenu::directionOf(WheelPoint point) const {
    const double right = point.x - centre.x;
    const double up = centre.y - point.y;
    const double distance = std::hypot(right, up);
    if (!std::isfinite(distance) || !(distance > deadCentre * radius)) return std::nullopt;
    return std::atan2(right, up);
}

std::optional<std::size_t> RotatingMenu::itemAt(WheelPoint point) const {
    const auto direction = directionOf(point);
    if (!direction || items_.empty()) return std::nullopt;
    return nearestItem(*direction - angle());
}

bool RotatingMenu::beginDrag(WheelPoint point, Time moment) {
    const auto direction = directionOf(point);
    if (!direction || items_.empty()) return false;
    angle_ = angle();
    turn_.reset();
    drag_ = Drag{*direction, {{moment, angle_}}};
    return true;
}

void RotatingMenu::moveDrag(WheelPoint point, Time moment) {
    const auto direction = directionOf(point);
    if (!direction || !drag_) return;
    auto& samples = drag_->samples;
    const double turned = shortestAngle(*direction - drag_->direction);
    drag_->direction = *direction;
    samples.push_back({moment, samples.back().angle + turned});
    if (samples.size() > maximumSamples) samples.pop_front();
    angle_ = normalizedAngle(samples.back().angle);
}

/// Up to the end, so that a finger that rested before it let go gives little. Time that runs
/// backwards or stands still gives none.
double RotatingMenu::dragVelocity(Time moment) const {
    const auto& samples = drag_->samples;
    const auto sinceThen = [moment](const Drag::Sample& sample) {
        return Seconds(moment) - Seconds(sample.moment);
    };
    const auto first = std::find_if(samples.begin(), samples.end(), [&](const auto& sample) {
        return sinceThen(sample) > Seconds{0} && sinceThen(sample) <= velocityWindow;
    });
    if (first == samples.end()) return 0;
    const double velocity = (samples.back().angle - first->angle) / sinceThen(*first).count();
    return std::clamp(velocity, -maximumVelocity, maximumVelocity);
}

void RotatingMenu::endDrag(Time moment) {
    if (!drag_) return;
    const double velocity = dragVelocity(moment);
    drag_.reset();
    letGo(velocity);
}

void RotatingMenu::letGo(double velocity) {
    const auto coasting = coastingTime(velocity);
    const double end = angle_ + coastedAngle(velocity, coasting);
    const double endVelocity = velocity * std::exp(-Seconds(coasting) / frictionTime);
    // The one that would be the nearest if nothing pulled.
    const auto item = nearestItem(-end - endVelocity * frictionTime.count());
    turn_ = Turn{.angle = angle_,
                 .velocity = velocity,
                 .coasting = coasting,
                 .item = item,
                 .offset = shortestAngle(end - restingAngle(item)),
                 .offsetVelocity = endVelocity};
}

bool RotatingMenu::advance(Time duration) {
    if (!turn_ || duration <= Time{0}) return isTurning();
    const auto self = shared_from_this();
    const Time left = turn_->coasting + pullingTime - turn_->elapsed;
    if (duration < left) {
        turn_->elapsed += duration;
    } else {
        settle(turn_->item);
    }
    return isTurning();
}

bool RotatingMenu::select(std::size_t index, bool animated) {
    if (index >= items_.size()) return false;
    const auto self = shared_from_this();
    angle_ = angle();
    drag_.reset();
    if (animated) {
        turn_ = Turn{.item = index, .offset = shortestAngle(angle_ - restingAngle(index))};
    } else {
        settle(index);
    }
    return true;
}

void RotatingMenu::settle(std::size_t index) {
    turn_.reset();
    angle_ = restingAngle(index);
    if (const auto told = delegate.lock()) told->rotatingMenuDidSelectItem(*this, index);
}

}  // namespace supportsdk
