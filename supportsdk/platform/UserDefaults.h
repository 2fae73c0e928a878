#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// Settings that survive the process: one suite of keys and values. Main thread, unless the real
/// part says more. A write that cannot be stored is logged and otherwise dropped; reads see it
/// until the end of the process all the same.
class UserDefaults {
 public:
    virtual ~UserDefaults() = default;

    /// The value as it was stored; nothing when the key is missing.
    [[nodiscard]] virtual std::optional<Json> value(const std::string& key) const = 0;

    virtual void setValue(const std::string& key, const Json& value) = 0;

    /// Removes the key; nothing happens when it is missing.
    virtual void remove(const std::string& key) = 0;

    /// Returns once everything set so far would survive a crash of the process and a loss of power;
    /// false when that could not be reached.
    virtual bool flush() = 0;

    /// All keys, sorted.
    [[nodiscard]] virtual std::vector<std::string> keys() const = 0;

    /// Typed reads: a missing key and a value of another type give nothing, or false.
    [[nodiscard]] std::optional<std::string> string(const std::string& key) const {
        const auto stored = value(key);
        if (!stored || !stored->is_string()) return std::nullopt;
        return stored->get<std::string>();
    }
    [[nodiscard]] bool boolean(const std::string& key) const {
        const auto stored = value(key);
        return stored && stored->is_boolean() && stored->get<bool>();
    }
    [[nodiscard]] std::optional<Json> dictionary(const std::string& key) const {
        auto stored = value(key);
        return stored && stored->is_object() ? std::move(stored) : std::nullopt;
    }
    [[nodiscard]] std::optional<Json> array(const std::string& key) const {
        auto stored = value(key);
        return stored && stored->is_array() ? std::move(stored) : std::nullopt;
    }
};

/// Opens suites. The same suite asked for twice in one process is the same object.
class UserDefaultsStore {
 public:
    virtual ~UserDefaultsStore() = default;

    [[nodiscard]] virtual std::shared_ptr<UserDefaults> standard() = 0;
    [[nodiscard]] virtual std::shared_ptr<UserDefaults> suite(const std::string& name) = 0;
};

}  // namespace supportsdk
