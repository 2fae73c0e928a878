#pragma once

#include <string>

namespace supportsdk {

/// Facts about the device. Any thread.
class Device {
 public:
    virtual ~Device() = default;

    /// Version of the operating system, as text.
    [[nodiscard]] virtual std::string systemVersion() const = 0;

    /// Model of the device; "" when unknown.
    [[nodiscard]] virtual std::string model() const = 0;
};

}  // namespace supportsdk
