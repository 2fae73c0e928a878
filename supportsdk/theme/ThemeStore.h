#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Images.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// What the JSON of a theme gave, by key. A read that asks for another type than the one stored
/// finds nothing.
class SUPPORTSDK_API ThemeStore {
 public:
    using Value = std::variant<Color, ImagePtr, std::string, double>;

    /// Themes have dozens of keys. A store that has as many as this takes no new ones, so that a
    /// service that sends others with each settings does not fill the memory.
    static constexpr std::size_t maximumEntries = 1000;

    /// Replaces what is stored under `key`.
    void set(const std::string& key, Value value);
    /// Stores a JSON text, number or truth value (1 or 0) as it is; leaves out everything else.
    void setRaw(const std::string& key, const Json& value);

    [[nodiscard]] std::optional<Color> color(std::string_view key) const;
    /// In a dark look, `darkKey` when it has a colour; `key` otherwise.
    [[nodiscard]] std::optional<Color> color(std::string_view key, std::string_view darkKey,
                                             bool dark) const;
    [[nodiscard]] ImagePtr image(std::string_view key) const;
    [[nodiscard]] std::optional<std::string> text(std::string_view key) const;
    [[nodiscard]] std::optional<double> number(std::string_view key) const;

    [[nodiscard]] bool contains(std::string_view key) const { return values_.count(key) > 0; }
    [[nodiscard]] bool empty() const { return values_.empty(); }

 private:
    template <typename Type>
    [[nodiscard]] std::optional<Type> get(std::string_view key) const;

    std::map<std::string, Value, std::less<>> values_;
};

}  // namespace supportsdk
