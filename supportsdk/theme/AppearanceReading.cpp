#include <charconv>

#include "supportsdk/core/Fields.h"
#include "supportsdk/core/LowerCased.h"
#include "supportsdk/theme/Appearance.h"
#include "supportsdk/theme/ThemeImages.h"

namespace supportsdk {

namespace {

bool contains(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

void storeColor(ThemeStore& store, const std::string& key, const Json& value) {
    if (!value.is_string()) return;
    if (const auto color = colorWithHexString(value.get_ref<const std::string&>()))
        store.set(key, *color);
}

/// The whole part of a number, or of the number that a text begins with.
std::optional<std::int64_t> wholeNumber(const Json& dictionary, const std::string& key) {
    const auto text = stringForKey(dictionary, key);
    if (!text) return integerForKey(dictionary, key);
    std::int64_t number = 0;
    const auto result = std::from_chars(text->data(), text->data() + text->size(), number);
    return result.ec == std::errc() ? std::optional(number) : std::nullopt;
}

/// One setting of the menu or of a form's group. Its name tells what it is: a colour, a text, or
/// else a whole number.
void storeSetting(ThemeStore& store, const std::string& target, const Json& dictionary,
                  const std::string& key) {
    const auto name = lowerCased(key);
    const auto& value = *valueForKey(dictionary, key);
    if (contains(name, "color")) {
        storeColor(store, target, value);
    } else if (contains(name, "heading") || contains(name, "style")) {
        store.setRaw(target, value);
    } else if (const auto number = wholeNumber(dictionary, key)) {
        store.set(target, static_cast<double>(*number));
    }
}

/// Why `json` does not parse. Builds nothing of it, and quotes nothing: it may be huge.
std::string parseError(const std::string& json) {
    const auto discardAll = [](int, Json::parse_event_t, Json&) { return false; };
    try {
        const Json nothing = Json::parse(json, discardAll);
    } catch (const Json::parse_error& error) {
        return "The theme is not valid JSON: the error is at byte " + std::to_string(error.byte) +
               ".";
    } catch (const Json::out_of_range&) {
        return "The theme is not valid JSON: it has a number that is too large.";
    }
    return "The theme is nested too deeply.";
}

}  // namespace

std::optional<std::string> Appearance::configureWithJSON(const std::string& json) {
    const auto settings = parseJson(json);
    if (!settings) return parseError(json);
    configureWithSettings(*settings);
    return std::nullopt;
}

void Appearance::configureWithSettings(const Json& settings) {
    ThemeImages images(*this);
    processNavigationBarAppearance(settings);
    processFormAppearanceWithDictionary(settings);
    processMenuAppearanceWithDictionary(settings);
    for (const auto& [key, info] : dictionaryForKey(settings, "menu").items())
        addMenuInfo(info, key, images);
    applyColorsAndIcons(settings, images);
    configureDefaultColors();
    configureNavigationBar();
}

void Appearance::processNavigationBarAppearance(const Json& settings) {
    const auto* section = valueForKey(settings, "navigationBarAppearance");
    if (!section || !section->is_object()) return;
    for (const auto& [key, value] : section->items()) {
        if (contains(lowerCased(key), "color")) storeColor(navigationBarAppearance_, key, value);
    }
    auto& global = *platform_->globalAppearance;
    global.setNavigationBarTintColor(navigationBarIconColor());
    global.setNavigationBarBarTintColor(navigationBarColor());
    global.setControlTintColor(navigationBarIconColor());
}

void Appearance::processMenuAppearanceWithDictionary(const Json& settings) {
    const auto& section = dictionaryForKey(settings, "menuAppearance");
    for (const auto& [key, value] : section.items()) {
        if (lowerCased(key) == "style" && value.is_string())
            menuStyle = lowerCased(value.get_ref<const std::string&>());
        storeSetting(menuAppearance_, key, section, key);
    }
}

void Appearance::processFormAppearanceWithDictionary(const Json& settings) {
    for (const auto& [key, group] : dictionaryForKey(settings, "formAppearance").items()) {
        const auto name = lowerCased(key);
        if (name != "label" && name != "entry") {
            formAppearance_.setRaw(name, group);
            continue;
        }
        if (!group.is_object()) continue;
        for (const auto& [attribute, value] : group.items())
            storeSetting(formAppearance_, name + lowerCased(attribute), group, attribute);
    }
}

void Appearance::addMenuInfo(const Json& info, const std::string& key) {
    ThemeImages images(*this);
    addMenuInfo(info, key, images);
}

void Appearance::addMenuInfo(const Json& info, const std::string& key, ThemeImages& images) {
    if (auto text = stringForKey(info, "text"))
        menuConfiguration_.set(key + "MenuText", *std::move(text));
    const auto* name = valueForKey(info, "icon");
    if (auto icon = name ? images.find(*name) : nullptr)
        menuConfiguration_.set(key + "MenuIcon", std::move(icon));
}

void Appearance::applyColorsAndIcons(const Json& settings, ThemeImages& images) {
    ThemeStore staged;
    for (const auto& [key, name] : dictionaryForKey(settings, "icons").items()) {
        if (auto image = images.find(name)) staged.set(key, std::move(image));
    }
    for (const auto& [key, text] : dictionaryForKey(settings, "colors").items()) {
        storeColor(staged, key, text);
    }
    if (const auto barColor = staged.color("navigationBarColor"))
        platform_->globalAppearance->setNavigationBarBarTintColor(barColor);
    if (staged.empty()) return;
    // As a whole: a colour that the new theme does not name falls back instead of standing beside
    // colours that it was not chosen for.
    configuration_ = std::move(staged);
    giveImagesToChat();
}

std::optional<std::string> Appearance::getJSONFromFile(const std::string& name) const {
    const auto data = platform_->kitBundle->data(name, "json");
    if (!data) return std::nullopt;
    auto text = toText(*data);
    return isUtf8(text) ? std::optional(std::move(text)) : std::nullopt;
}

}  // namespace supportsdk
