#pragma once

#include <chrono>
#include <ctime>

namespace supportsdk {

/// Wall clock and time zone of the device. Any thread.
class Clock {
 public:
    using Time = std::chrono::system_clock::time_point;

    virtual ~Clock() = default;

    [[nodiscard]] virtual Time now() const = 0;

    /// `time` broken down in the device's time zone; `tm_gmtoff` is filled.
    [[nodiscard]] virtual std::tm local(Time time) const = 0;

    /// The moment that `parts` names in the device's time zone. Parts out of range are carried
    /// over, as mktime does; `tm_isdst` is ignored.
    [[nodiscard]] virtual Time fromLocal(const std::tm& parts) const = 0;
};

}  // namespace supportsdk
