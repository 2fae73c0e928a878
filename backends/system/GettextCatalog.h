#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace supportsdk {

/// A compiled message catalogue of GNU gettext (".mo"), either byte order, UTF-8 only. Entries with
/// a plural give their singular.
class GettextCatalog {
 public:
    static constexpr std::uintmax_t maximumFileBytes = std::uintmax_t{8} * 1024 * 1024;

    /// Nothing when the file is missing, too long, damaged or not in UTF-8.
    static std::optional<GettextCatalog> load(const std::filesystem::path& file);

    /// The translation; nothing when there is none. Valid as long as the catalogue.
    [[nodiscard]] std::optional<std::string_view> find(std::string_view english) const;

 private:
    GettextCatalog() = default;

    [[nodiscard]] std::optional<std::uint32_t> number(std::size_t offset) const;
    /// String `index` of the table at `table`.
    [[nodiscard]] std::optional<std::string_view> text(std::uint32_t table,
                                                       std::uint32_t index) const;

    std::string bytes_;
    bool swapped_ = false;
    std::uint32_t count_ = 0;
    std::uint32_t originals_ = 0;
    std::uint32_t translations_ = 0;
};

}  // namespace supportsdk
