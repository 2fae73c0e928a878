#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <vector>

#include "supportsdk/launcher/Sector.h"
#include "supportsdk/launcher/Slice.h"
#include "supportsdk/platform/Export.h"

namespace supportsdk {

class RotatingMenu;

/// Hears what a wheel has come to rest on.
class SUPPORTSDK_API RotatingMenuDelegate {
 public:
    virtual ~RotatingMenuDelegate() = default;

    /// Once each time the wheel comes to rest, also on the item that it lay on before. The delegate
    /// may do anything with the wheel, and release it.
    virtual void rotatingMenuDidSelectItem(RotatingMenu& menu, std::size_t index) {
        (void)menu, (void)index;
    }
};

/// A wheel of items for hosts to draw: it turns with the finger, runs on when let go, slows down
/// and comes to rest with an item at the top. The kit itself shows none.
///
/// The items share the circle evenly and follow each other clockwise. Turning is a matter of state
/// alone: the wheel has no timer and no clock, so the host passes time to advance() and the moments
/// of touches to the drag, both of one steady clock. Where the wheel comes to rest, and when, does
/// not depend on the steps in which time is passed. One thread at a time.
class SUPPORTSDK_API RotatingMenu : public std::enable_shared_from_this<RotatingMenu> {
 public:
    using Time = std::chrono::nanoseconds;

    /// Never null.
    static std::shared_ptr<RotatingMenu> create();

    /// Stops the wheel, ends a drag, and brings the first item to the top; tells nobody.
    void setItems(std::vector<RotatingMenuItem> items);
    [[nodiscard]] const std::vector<RotatingMenuItem>& items() const { return items_; }

    // --- What to draw ---

    /// How far the first item has turned from the top, within [0, 2π).
    [[nodiscard]] double angle() const;
    /// The item at the top, or the nearest to it at this moment; nothing without items.
    [[nodiscard]] std::optional<std::size_t> selectedIndex() const;
    /// Nothing when there is no such item.
    [[nodiscard]] std::optional<Slice> slice(std::size_t index) const;
    /// The item in the direction of that point, for taps; nothing in the dead centre.
    [[nodiscard]] std::optional<std::size_t> itemAt(WheelPoint point) const;

    // --- Turning by hand ---

    /// A finger came down: the wheel stops under it. False, and nothing happens, when there are no
    /// items, or on the dead centre, where the least move would be half a turn.
    bool beginDrag(WheelPoint point, Time moment);
    /// Without a drag nothing happens. Points that are no numbers or lie on the dead centre are
    /// passed over.
    void moveDrag(WheelPoint point, Time moment);
    /// The finger let go: the wheel runs on with the speed of the latest moves.
    void endDrag(Time moment);

    // --- Turning by itself ---

    /// Lets time pass; a negative duration does nothing. True while there is more to come.
    bool advance(Time duration);
    /// Brings the item to the top the shorter way: with advance(), or at once. A drag ends. False,
    /// and nothing happens, when there is no such item.
    bool select(std::size_t index, bool animated);
    [[nodiscard]] bool isDragging() const { return drag_.has_value(); }
    /// Turning by itself.
    [[nodiscard]] bool isTurning() const { return turn_.has_value(); }

    /// In the unit of the points that are passed.
    WheelPoint centre;
    /// Of the rim, in the same unit; above 0.
    double radius = 1;
    std::weak_ptr<RotatingMenuDelegate> delegate;

 private:
    struct Drag {
        struct Sample {
            Time moment;
            double angle;
        };
        /// Of the finger.
        double direction;
        /// Of the wheel, not normalised; the latest last.
        std::deque<Sample> samples;
    };
    /// From letting go to rest, a function of `elapsed` alone.
    struct Turn {
        // How the wheel runs on.
        double angle = 0;
        double velocity = 0;
        Time coasting{0};
        // How its last item pulls itself to the top: from how far off, clockwise, and how fast.
        std::size_t item = 0;
        double offset = 0;
        double offsetVelocity = 0;
        Time elapsed{0};
    };

    RotatingMenu() = default;

    [[nodiscard]] double step() const;
    [[nodiscard]] std::optional<double> directionOf(WheelPoint point) const;
    /// To a place that far from the first item, clockwise. There must be items.
    [[nodiscard]] std::size_t nearestItem(double way) const;
    [[nodiscard]] double restingAngle(std::size_t index) const;
    [[nodiscard]] double dragVelocity(Time moment) const;
    void letGo(double velocity);
    void settle(std::size_t index);

    std::vector<RotatingMenuItem> items_;
    /// While it rests or is dragged.
    double angle_ = 0;
    std::optional<Drag> drag_;
    std::optional<Turn> turn_;
};

}  // namespace supportsdk
