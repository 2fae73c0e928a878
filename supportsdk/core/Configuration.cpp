#include "supportsdk/core/Configuration.h"

#include <string_view>
#include <utility>

#include "supportsdk/core/DefaultsKeys.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/ReplaceAll.h"
#include "supportsdk/core/Url.h"

namespace supportsdk {

namespace {

constexpr std::chrono::seconds imageTimeLimit{10};

std::shared_ptr<UserDefaults> defaultsOf(const Platform& platform) {
    return platform.userDefaults->standard();
}

}  // namespace

Configuration::Configuration(const Json& dictionary, PlatformPtr platform)
    : deployment(Deployment::load(*platform)), platform_(std::move(platform)) {
    std::optional<Json> given;
    if (dictionary.is_object()) {
        given = dictionary;
        saveDefaultConfiguration(dictionary);
    }
    const auto saved = getSavedConfiguration();
    populate(saved ? saved : given);
}

void Configuration::populate(const std::optional<Json>& dictionary) {
    if (!dictionary || !dictionary->is_object()) return;
    configJSON = dictionary;
    configAPIHost = stringForKey(*configJSON, "apiHost");
    if (configAPIHost) configAPIHost = changeDomain(*configAPIHost);
    configAPIKey = stringForKey(*configJSON, "apiKey");
    configButtonURL = stringForKey(*configJSON, "buttonURL");
    configIntegrationId = stringForKey(*configJSON, "integrationId");
    configPartnerTeam = stringForKey(*configJSON, "partnerTeam");
    configPartnerToken = stringForKey(*configJSON, "partnerToken");
    configPrivateKey = stringForKey(*configJSON, "privateKey");
    configButtonImage = imageWithUrl(configButtonURL);
}

void Configuration::tryNewConfiguration(const Json& dictionary) {
    isTryingNewConfiguration = true;
    backupConfiguration = configJSON;
    populate(dictionary);
}

void Configuration::restoreConfiguration() {
    populate(backupConfiguration);
    endTrial();
}

void Configuration::saveConfiguration() {
    if (configJSON) {
        const auto defaults = defaultsOf(*platform_);
        defaults->setValue(defaultsKey::devModeConfiguration, *configJSON);
        defaults->flush();
    }
    endTrial();
}

void Configuration::endTrial() {
    backupConfiguration.reset();
    isTryingNewConfiguration = false;
}

std::optional<Json> Configuration::getSavedConfiguration() const {
    return defaultsOf(*platform_)->dictionary(defaultsKey::devModeConfiguration);
}

void Configuration::clearSavedConfiguration() {
    defaultsOf(*platform_)->remove(defaultsKey::devModeConfiguration);
}

void Configuration::saveDefaultConfiguration(const Json& dictionary) {
    defaultsOf(*platform_)->setValue(defaultsKey::defaultConfiguration, dictionary);
}

std::optional<Json> Configuration::getDefaultConfiguration() const {
    return defaultsOf(*platform_)->dictionary(defaultsKey::defaultConfiguration);
}

void Configuration::restoreDefaultConfiguration() {
    clearSavedConfiguration();
    populate(getDefaultConfiguration());
    endTrial();
}

std::string Configuration::changeDomain(const std::string& host) const {
    return replaceAll(host, deployment.legacyDomainSuffix, deployment.domainSuffix);
}

std::string Configuration::redirect(const std::string& host, const std::string& to) {
    return replaceAll(host, "quillpost", to);
}

HttpHeaders Configuration::getHeaders() const {
    HttpHeaders headers;
    const auto add = [&headers](const char* name, const std::optional<std::string>& value) {
        if (value) headers.emplace_back(name, *value);
    };
    add("X-Quorrand-Token", configPartnerToken);
    add("X-Quorrand-Integration", configIntegrationId);
    add("X-Quorrand-Key", configAPIKey);
    return headers;
}

ImagePtr Configuration::imageWithUrl(const std::optional<std::string>& url) const {
    if (!url || !isUrl(*url)) return nullptr;
    const auto data = platform_->http->read(*url, imageTimeLimit);
    return data ? platform_->images->decode(*data) : nullptr;
}

bool Configuration::isDeveloperMode(const Platform& platform) {
    return defaultsOf(platform)->boolean(defaultsKey::devModeEnabled);
}

void Configuration::enableDeveloperMode(const Platform& platform, bool enabled) {
    const auto defaults = defaultsOf(platform);
    if (enabled) {
        defaults->setValue(defaultsKey::devModeEnabled, true);
        return;
    }
    defaults->remove(defaultsKey::devModeEnabled);
    defaults->remove(defaultsKey::devModeConfiguration);
}

}  // namespace supportsdk
