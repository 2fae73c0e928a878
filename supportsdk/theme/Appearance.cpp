#include "supportsdk/theme/Appearance.h"

#include <algorithm>

#include "supportsdk/core/Fields.h"

namespace supportsdk {

namespace {

std::string lowerCased(std::string text) {
    // ASCII only: the names of keys and styles, whatever the locale.
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return text;
}

}  // namespace

Appearance::Appearance(PlatformPtr platform) : platform_(std::move(platform)) {}

void Appearance::configure() {
    if (isConfigured_) return;
    platform_->progress->setDarkStyle(darkMode());
    if (const auto theme = platform_->kitBundle->data("default_appearance", "json")) {
        configureWithJSON(toText(*theme));
    }
    isConfigured_ = true;
}

std::optional<std::string> Appearance::configureWithJSON(const std::string& json) {
    const auto settings = parseJson(json);
    if (!settings) return "The theme is not valid JSON.";
    configureWithSettings(*settings);
    return std::nullopt;
}

void Appearance::configureWithSettings(const Json& settings) {
    processMenuAppearance(settings);
    for (const auto& [key, info] : dictionaryForKey(settings, "menu").items()) {
        addMenuInfo(info, key);
    }
}

bool Appearance::darkMode() const {
    return platform_->traits->darkMode();
}

void Appearance::processMenuAppearance(const Json& settings) {
    for (const auto& [key, value] : dictionaryForKey(settings, "menuAppearance").items()) {
        const auto name = lowerCased(key);
        if (name == "style" && value.is_string()) {
            menuStyle = lowerCased(value.get_ref<const std::string&>());
        }
        if (name.find("heading") != std::string::npos || name.find("style") != std::string::npos) {
            menuAppearance_[key] = value;
        }
    }
}

void Appearance::addMenuInfo(const Json& info, const std::string& key) {
    if (auto text = stringForKey(info, "text")) {
        menuConfiguration_[key + "MenuText"] = *std::move(text);
    }
}

std::optional<std::string> Appearance::menuText(const std::optional<std::string>& title,
                                                const char* key) const {
    return title ? title : stringForKey(menuConfiguration_, key);
}

std::optional<std::string> Appearance::chatMenuText() const {
    return menuText(titles.chatTitle, "chatMenuText");
}

std::optional<std::string> Appearance::callMeMenuText() const {
    return menuText(titles.callmeTitle, "callmeMenuText");
}

std::optional<std::string> Appearance::knowledgeMenuText() const {
    return menuText(titles.kbTitle, "knowledgeMenuText");
}

std::optional<std::string> Appearance::webMenuText() const {
    return menuText(titles.websiteTitle, "webMenuText");
}

std::optional<std::string> Appearance::emailMenuText() const {
    return menuText(titles.emailTitle, "emailMenuText");
}

std::optional<std::string> Appearance::phoneMenuText() const {
    return menuText(titles.phoneTitle, "phoneMenuText");
}

std::optional<std::string> Appearance::formsMenuText() const {
    return menuText(titles.formsTitle, "formsMenuText");
}

std::optional<std::string> Appearance::historyMenuText() const {
    return menuText(titles.historyTitle, "historyMenuText");
}

std::optional<std::string> Appearance::journeysMenuText() const {
    return menuText(titles.journeysTitle, "journeysMenuText");
}

std::optional<std::string> Appearance::exitMenuText() const {
    return menuText(std::nullopt, "exitMenuText");
}

std::string Appearance::menuHeading() const {
    return stringForKey(menuAppearance_, "heading").value_or("Support");
}

}  // namespace supportsdk
