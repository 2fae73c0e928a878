#pragma once

#include <filesystem>
#include <mutex>

#include "supportsdk/platform/Device.h"

namespace supportsdk {

/// Facts from os-release, the firmware's tables and the kernel. Read once, with the first question;
/// printable ASCII only, since they travel in HTTP headers.
///
/// systemVersion() is VERSION_ID of os-release ("12"), else the kernel's release. model() is the
/// product name of the DMI table, else the model of the device tree.
class LinuxDevice final : public Device {
 public:
    /// `root` stands for "/".
    explicit LinuxDevice(std::filesystem::path root = "/") : root_(std::move(root)) {}

    [[nodiscard]] std::string systemVersion() const override;
    [[nodiscard]] std::string model() const override;

 private:
    void read() const;

    const std::filesystem::path root_;
    mutable std::once_flag once_;
    mutable std::string systemVersion_;
    mutable std::string model_;
};

}  // namespace supportsdk
