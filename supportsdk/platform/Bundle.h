#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// A set of resources with an information dictionary: the host application's (main bundle) or the
/// kit's. Main thread.
class Bundle {
 public:
    virtual ~Bundle() = default;

    /// `CFBundleIdentifier`; nothing when the bundle has none.
    [[nodiscard]] std::optional<std::string> identifier() const {
        return info("CFBundleIdentifier");
    }

    /// A string of the information dictionary (`CFBundleShortVersionString`, usage descriptions,
    /// ...).
    [[nodiscard]] virtual std::optional<std::string> info(const std::string& key) const = 0;

    /// The file of the resource `name` of `type` (extension without the point, may be empty).
    /// Nothing when there is no such file, or when the name would leave the bundle.
    [[nodiscard]] virtual std::optional<std::filesystem::path> path(
        const std::string& name, const std::string& type) const = 0;

    /// The content of that file; nothing when it is missing or cannot be read.
    [[nodiscard]] virtual std::optional<Bytes> data(const std::string& name,
                                                    const std::string& type) const = 0;
};

}  // namespace supportsdk
