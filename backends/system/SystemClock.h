#pragma once

#include "supportsdk/platform/Clock.h"

namespace supportsdk {

/// The system's clock, and the time zone that TZ or /etc/localtime names. Moments beyond what
/// Clock::Time can hold become its first or last one.
class SystemClock final : public Clock {
 public:
    [[nodiscard]] Time now() const override;
    [[nodiscard]] std::tm local(Time time) const override;
    [[nodiscard]] Time fromLocal(const std::tm& parts) const override;
};

}  // namespace supportsdk
