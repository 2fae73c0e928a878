#include "supportsdk/core/ObjectDescription.h"

#include <atomic>

#include "supportsdk/core/Fields.h"

namespace supportsdk {

namespace {

std::atomic<int> depth = 0;

/// Counts one level deeper for as long as it lives.
struct Level {
    const int tabs = depth++;

    Level() = default;
    ~Level() { --depth; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;
};

std::string tabsOf(int count) {
    return {std::string(static_cast<std::size_t>(count), '\t')};
}

}  // namespace

std::string qd_classPropertiesAndValues(std::string_view className,
                                        const std::function<PropertyList()>& properties) {
    const Level level;
    const auto indent = tabsOf(level.tabs);
    const auto deeper = tabsOf(level.tabs + 1);
    auto text = indent + "<" + std::string(className) + "> {\n";
    for (const auto& [name, value] : properties()) {
        text.append(deeper).append(name).append(": [ ").append(value).append(" ]\n");
    }
    return text + indent + "} </" + std::string(className) + ">\n";
}

std::string debugText(const std::optional<std::string>& value) {
    return value.value_or("(null)");
}

std::string debugText(const std::optional<std::int64_t>& value) {
    return value ? std::to_string(*value) : "(null)";
}

std::string debugText(const std::optional<double>& value) {
    return value ? dumpJson(*value) : "(null)";
}

std::string debugText(const std::optional<Json>& value) {
    return value ? dumpJson(*value) : "(null)";
}

std::string debugText(bool value) {
    return value ? "1" : "0";
}

}  // namespace supportsdk
