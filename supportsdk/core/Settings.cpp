#include "supportsdk/core/Settings.h"

#include "supportsdk/core/Fields.h"
#include "supportsdk/core/SettingsKeys.h"
#include "supportsdk/core/Url.h"

namespace supportsdk {

namespace {

/// What both layouts hold under the same keys, each in its own object.
void readCommon(const Json& object, ReadSettings& settings) {
    auto& features = settings.features;
    features.supportProactiveEnabled = boolForKey(object, kKeySupportProactiveEnabled);
    features.supportScreenShareEnabled = boolForKey(object, kKeySupportScreenShareEnabled);
    features.supportUnavailable = boolForKey(object, "unavailable");
    features.supportUnavailableSummary = stringForKey(object, "unavailableSummary");
    settings.defaultMember = dictionaryForKey(object, "defaultMember");
}

std::optional<std::string> asUrl(const std::optional<std::string>& text) {
    return text && isUrl(*text) ? text : std::nullopt;
}

}  // namespace

bool isComponentLayout(const Json& response) {
    return stringForKey(dictionaryForKey(response, "advancedConfiguration"), "version") == "2";
}

ReadSettings readFlatSettings(const Json& response, const Features& former,
                              const CallMeTexts& texts) {
    ReadSettings settings{.features = former, .titles = {}, .defaultMember = {}, .theme = {}};
    auto& features = settings.features;
    features.supportWebsite = stringForKey(response, kKeySupportWebsite);
    if (features.supportWebsite) features.supportWebsiteURL = asUrl(features.supportWebsite);

    // One switch for two channels, and journeys that are never off: this layout knows no others.
    features.callmeEnabled = boolForKey(response, kKeySupportCallmeEnabled);
    features.chatEnabled = features.callmeEnabled;
    features.kbEnabled = boolForKey(response, kKeySupportKBEnabled);
    features.websiteEnabled = boolForKey(response, kKeySupportWebsiteEnabled);
    features.emailEnabled = boolForKey(response, kKeySupportEmailEnabled);
    features.phoneEnabled = boolForKey(response, kKeySupportPhoneEnabled);
    features.formsEnabled = boolForKey(response, kKeySupportFormsEnabled);
    features.historyEnabled = boolForKey(response, kKeySupportHistoryEnabled);
    features.journeysEnabled = true;

    settings.titles = {.chatTitle = stringForKey(response, "chatTitle"),
                       .callmeTitle = stringForKey(response, "callmeMenuTitle"),
                       .kbTitle = stringForKey(response, "kbTitle"),
                       .websiteTitle = stringForKey(response, "webTitle"),
                       .emailTitle = stringForKey(response, "emailTitle"),
                       .phoneTitle = stringForKey(response, "phoneTitle"),
                       .formsTitle = stringForKey(response, "formsTitle"),
                       .historyTitle = stringForKey(response, "historyTitle"),
                       .journeysTitle = stringForKey(response, "journeysTitle")};

    features.supportEmailAddress = stringForKey(response, kKeySupportEmail);
    features.supportPhoneNumber = stringForKey(response, kKeySupportPhone);
    features.callMeButtonText =
        stringForKey(response, "callmeButtonText").value_or(texts.buttonText);
    features.callMeButtonConfirmation =
        stringForKey(response, "callmeButtonConfirmation").value_or(texts.buttonConfirmation);
    features.supportForms = arrayForKey(response, kKeySupportForms);
    readCommon(response, settings);
    features.advancedConfiguration = dictionaryForKey(response, "advancedConfiguration");
    settings.theme = *features.advancedConfiguration;
    return settings;
}

ReadSettings readComponentSettings(const Json& advanced, const Features& former,
                                   const CallMeTexts& texts) {
    ReadSettings settings{.features = former, .titles = {}, .defaultMember = {}, .theme = advanced};
    auto& features = settings.features;
    auto& titles = settings.titles;
    features.isV2Settings = true;

    const auto& components = dictionaryForKey(advanced, "components");
    const auto read = [&components](const char* name, bool& enabled,
                                    std::optional<std::string>& title,
                                    const char* titleKey = "title") -> const Json& {
        const auto& component = dictionaryForKey(components, name);
        enabled = boolForKey(component, "enabled");
        title = stringForKey(component, titleKey);
        return component;
    };

    read("chat", features.chatEnabled, titles.chatTitle);
    const auto& callme = read("callme", features.callmeEnabled, titles.callmeTitle, "menuTitle");
    features.callMeButtonText = stringForKey(callme, "buttonText").value_or(texts.buttonText);
    features.callMeButtonConfirmation =
        stringForKey(callme, "buttonConfirmation").value_or(texts.buttonConfirmation);
    read("kb", features.kbEnabled, titles.kbTitle);
    const auto& website = read("website", features.websiteEnabled, titles.websiteTitle);
    features.supportWebsite = stringForKey(website, "website");
    features.supportWebsiteURL = asUrl(features.supportWebsite);
    const auto& email = read("email", features.emailEnabled, titles.emailTitle);
    features.supportEmailAddress = stringForKey(email, "email");
    read("phone", features.phoneEnabled, titles.phoneTitle);
    const auto& forms = read("forms", features.formsEnabled, titles.formsTitle);
    features.supportForms = arrayForKey(forms, "supportForms");
    read("history", features.historyEnabled, titles.historyTitle);
    read("journeys", features.journeysEnabled, titles.journeysTitle);

    // The number of the telephone channel has its place outside the components.
    features.supportPhoneNumber = stringForKey(advanced, kKeySupportPhone);
    readCommon(advanced, settings);
    return settings;
}

Features withoutChannels(Features former) {
    former.chatEnabled = false;
    former.callmeEnabled = false;
    former.kbEnabled = false;
    former.websiteEnabled = false;
    former.emailEnabled = false;
    former.phoneEnabled = false;
    former.formsEnabled = false;
    former.historyEnabled = false;
    former.journeysEnabled = false;
    return former;
}

}  // namespace supportsdk
