#include "supportsdk/theme/ThemeStore.h"

namespace supportsdk {

void ThemeStore::set(const std::string& key, Value value) {
    if (values_.size() >= maximumEntries && !contains(key)) return;
    values_.insert_or_assign(key, std::move(value));
}

void ThemeStore::setRaw(const std::string& key, const Json& value) {
    if (value.is_string()) {
        set(key, value.get_ref<const std::string&>());
    } else if (value.is_boolean()) {
        set(key, value.get<bool>() ? 1.0 : 0.0);
    } else if (value.is_number()) {
        set(key, value.get<double>());
    }
}

template <typename Type>
std::optional<Type> ThemeStore::get(std::string_view key) const {
    const auto found = values_.find(key);
    const auto* value = found == values_.end() ? nullptr : std::get_if<Type>(&found->second);
    return value ? std::optional(*value) : std::nullopt;
}

std::optional<Color> ThemeStore::color(std::string_view key) const {
    return get<Color>(key);
}

std::optional<Color> ThemeStore::color(std::string_view key, std::string_view darkKey,
                                       bool dark) const {
    const auto darkColor = dark ? color(darkKey) : std::nullopt;
    return darkColor ? darkColor : color(key);
}

ImagePtr ThemeStore::image(std::string_view key) const {
    return get<ImagePtr>(key).value_or(nullptr);
}

std::optional<std::string> ThemeStore::text(std::string_view key) const {
    return get<std::string>(key);
}

std::optional<double> ThemeStore::number(std::string_view key) const {
    return get<double>(key);
}

}  // namespace supportsdk
