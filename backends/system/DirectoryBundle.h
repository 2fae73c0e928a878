#pragma once

#include <filesystem>
#include <optional>

#include "supportsdk/platform/Bundle.h"

namespace supportsdk {

/// A bundle that is a folder. Its information dictionary is the file Info.json there, if any; it is
/// read with the first question and then kept. Names may lead into folders below, but neither "..",
/// an absolute name nor a symbolic link leads out.
class DirectoryBundle final : public Bundle {
 public:
    /// A longer file counts as one that cannot be read.
    static constexpr std::uintmax_t maximumFileBytes = std::uintmax_t{16} * 1024 * 1024;

    /// An empty `folder` makes a bundle without anything in it.
    explicit DirectoryBundle(std::filesystem::path folder) : folder_(std::move(folder)) {}

    [[nodiscard]] std::optional<std::string> info(const std::string& key) const override;
    [[nodiscard]] std::optional<std::filesystem::path> path(const std::string& name,
                                                            const std::string& type) const override;
    [[nodiscard]] std::optional<Bytes> data(const std::string& name,
                                            const std::string& type) const override;

 private:
    const std::filesystem::path folder_;
    mutable std::optional<Json> info_;
};

}  // namespace supportsdk
