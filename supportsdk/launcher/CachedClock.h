#pragma once

#include <memory>
#include <optional>
#include <unordered_map>

#include "supportsdk/platform/Clock.h"

namespace supportsdk {

/// A clock for reading many dates: asks another one only for the days that it has not met, and for
/// those near a change of the time zone's offset. The same answers at a tenth of the cost. One
/// thread; a change of the device's time zone goes unnoticed, so it lives for one list.
class CachedClock : public Clock {
 public:
    explicit CachedClock(std::shared_ptr<const Clock> clock) : clock_(std::move(clock)) {}

    [[nodiscard]] Time now() const override { return clock_->now(); }
    [[nodiscard]] std::tm local(Time time) const override { return clock_->local(time); }
    [[nodiscard]] Time fromLocal(const std::tm& parts) const override;

 private:
    [[nodiscard]] std::optional<Time> startOfPlainDay(const std::tm& parts) const;

    const std::shared_ptr<const Clock> clock_;
    /// When each day begins; nothing for a day that may be longer or shorter than others.
    mutable std::unordered_map<int, std::optional<Time>> days_;
};

}  // namespace supportsdk
