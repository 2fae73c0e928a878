#include "backends/system/GettextLocalizer.h"

#include <algorithm>
#include <cstdlib>

namespace supportsdk {

namespace {

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string withoutCodeset(const std::string& locale) {
    return locale.substr(0, locale.find_first_of(".@"));
}

bool isEnglish(const std::string& language) {
    return language == "en" || language.starts_with("en_") || language == "C" ||
           language == "POSIX";
}

/// A language becomes the name of a folder.
bool isSafe(const std::string& language) {
    return !language.empty() && std::all_of(language.begin(), language.end(), [](char letter) {
        return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
               (letter >= '0' && letter <= '9') || letter == '_' || letter == '-';
    });
}

}  // namespace

std::string GettextLocalizer::localized(const std::string& english) const {
    // The entry for "" is the catalogue's header.
    if (english.empty()) return english;
    if (!loaded_) {
        catalog_ = loadCatalog();
        loaded_ = true;
    }
    const auto found = catalog_ ? catalog_->find(english) : std::nullopt;
    return found ? std::string(*found) : english;
}

std::optional<GettextCatalog> GettextLocalizer::loadCatalog() const {
    for (const auto& wanted : languages_) {
        const auto language = withoutCodeset(wanted);
        if (isEnglish(language)) return std::nullopt;
        for (const auto& name : {language, language.substr(0, language.find('_'))}) {
            if (!isSafe(name)) continue;
            auto catalog = GettextCatalog::load(folder_ / name / "LC_MESSAGES" / "supportsdk.mo");
            if (catalog) return catalog;
        }
    }
    return std::nullopt;
}

std::vector<std::string> languagesOfEnvironment() {
    std::string locale;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (locale = variable(name); !locale.empty()) break;
    }
    const auto language = withoutCodeset(locale);
    if (language.empty() || language == "C" || language == "POSIX") return {};

    std::vector<std::string> languages;
    const auto list = variable("LANGUAGE");
    for (std::size_t begin = 0; begin < list.size();) {
        const auto end = std::min(list.find(':', begin), list.size());
        if (end > begin) languages.push_back(list.substr(begin, end - begin));
        begin = end + 1;
    }
    languages.push_back(locale);
    return languages;
}

}  // namespace supportsdk
