#include "supportsdk/core/Support.h"

#include <array>
#include <typeinfo>
#include <utility>

#include "supportsdk/core/Configuration.h"
#include "supportsdk/core/DefaultsKeys.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk {

namespace {

constexpr const char* bundleVersionKey = "CFBundleShortVersionString";
constexpr const char* bundleBuildKey = "CFBundleVersion";

/// Whether the bundle's version and build are the ones stored under these keys. Nothing stored is
/// never the same.
bool isStoredVersion(const Bundle& bundle, const UserDefaults& defaults, const char* versionKey,
                     const char* buildKey) {
    const auto version = defaults.string(versionKey);
    const auto build = defaults.string(buildKey);
    return version && build && version == bundle.info(bundleVersionKey) &&
           build == bundle.info(bundleBuildKey);
}

void storeOrRemove(UserDefaults& defaults, const char* key,
                   const std::optional<std::string>& value) {
    if (value) {
        defaults.setValue(key, *value);
    } else {
        defaults.remove(key);
    }
}

bool isNavigationController(const ScreenController& controller) {
    // The exact class: a host's own kind of stack counts as a plain screen.
    return typeid(controller) == typeid(NavigationController);
}

std::shared_ptr<ScreenController> lastChild(const ScreenController& controller) {
    const auto& children = static_cast<const NavigationController&>(controller).children;
    return children.empty() ? nullptr : children.back();
}

}  // namespace

Support::Support(std::weak_ptr<SupportDelegate> owner, PlatformPtr parts)
    : platform(std::move(parts)), delegate(std::move(owner)) {}

Support::~Support() = default;

std::shared_ptr<Support> Support::create(const Json& dictionary,
                                         std::weak_ptr<SupportDelegate> delegate,
                                         PlatformPtr platform) {
    std::shared_ptr<Support> support(new Support(std::move(delegate), std::move(platform)));
    // A developer's configuration does not outlive an update of the host application, so it has to
    // go before the configuration is read.
    if (isNewAppVersion(*support->platform)) {
        Configuration::enableDeveloperMode(*support->platform, false);
    }
    saveVersionInformation(*support->platform);
    support->config = std::make_shared<Configuration>(dictionary, support->platform);
    support->setup();
    support->getSettings();
    return support;
}

void Support::setup() {
    const auto& bundle = *platform->kitBundle;
    supportSDKName = bundle.info("CFBundleName");
    supportSDKVersion = bundle.info(bundleVersionKey);
    supportSDKBuild = bundle.info(bundleBuildKey);
    createAppearance();
    attachChat();
    isCloudConfigComplete = false;
}

std::optional<Json> Support::jsonFromFile(const Platform& platform, const std::string& fileName) {
    if (!platform.mainBundle->identifier()) return std::nullopt;
    const auto point = fileName.find('.');
    std::string type = "json";
    if (point != std::string::npos) {
        type = fileName.substr(point + 1);
        type.erase(std::min(type.find('.'), type.size()));
    }
    const auto data = platform.mainBundle->data(fileName.substr(0, point), type);
    if (!data) return std::nullopt;
    auto json = parseJson(toText(*data));
    return json && json->is_structured() ? std::move(json) : std::nullopt;
}

void Support::reloadWithJSON(const std::optional<Json>& dictionary) {
    tryConfiguration(dictionary);
}

void Support::configureWithJSON(const std::optional<Json>& dictionary) {
    tryConfiguration(dictionary);
}

void Support::tryConfiguration(const std::optional<Json>& dictionary) {
    if (!dictionary || !dictionary->is_object()) return;
    config->tryNewConfiguration(*dictionary);
    isCloudConfigComplete = false;
    getSettings();
}

void Support::restoreDefaultConfiguration() {
    config->restoreDefaultConfiguration();
    isCloudConfigComplete = false;
    getSettings();
}

void Support::retire() {
    isRetired_ = true;
    delegate.reset();
}

bool Support::isProduction() const {
    return config->configAPIHost && *config->configAPIHost == config->deployment.productionHost;
}

std::optional<std::string> Support::getHost() const {
    return config->host();
}

ImagePtr Support::getButtonImage() const {
    return config->getButtonImage();
}

std::optional<std::string> Support::providerId() const {
    return config->configIntegrationId;
}

bool Support::hasProviderId() const {
    return providerId().has_value();
}

std::string Support::clientAppIdentifier() const {
    const auto version = platform->kitBundle->info(bundleVersionKey).value_or("(null)");
    // The service tells kits apart by this text, so it names that system on every platform.
    return std::string(SUPPORT_SDK_NAME) + " " + version + ", iOS " +
           platform->device->systemVersion() + " [" + providerId().value_or("(null)") + "]";
}

void Support::saveVersionInformation(const Platform& platform) {
    const auto version = platform.mainBundle->info(bundleVersionKey);
    const auto build = platform.mainBundle->info(bundleBuildKey);
    const auto defaults = platform.userDefaults->standard();
    // The application's values go into the kit's keys too: data stored so far has them there.
    storeOrRemove(*defaults, defaultsKey::versionLastApp, version);
    storeOrRemove(*defaults, defaultsKey::buildLastApp, build);
    storeOrRemove(*defaults, defaultsKey::versionLastSDK, version);
    storeOrRemove(*defaults, defaultsKey::buildLastSDK, build);
}

bool Support::isNewAppVersion(const Platform& platform) {
    return !isStoredVersion(*platform.mainBundle, *platform.userDefaults->standard(),
                            defaultsKey::versionLastApp, defaultsKey::buildLastApp);
}

bool Support::isNewSDKVersion(const Platform& platform) {
    return isStoredVersion(*platform.kitBundle, *platform.userDefaults->standard(),
                           defaultsKey::versionLastSDK, defaultsKey::buildLastSDK);
}

std::vector<std::string> Support::validateInfoPlistKeys() const {
    constexpr std::array keys{"NSCameraUsageDescription", "NSMicrophoneUsageDescription",
                              "NSPhotoLibraryUsageDescription"};
    std::vector<std::string> missing;
    for (const auto* key : keys) {
        if (!platform->mainBundle->info(key)) missing.emplace_back(key);
    }
    return missing;
}

std::shared_ptr<ScreenController> Support::topViewController(const Platform& platform) {
    return topViewController(platform.presenter->rootController());
}

std::shared_ptr<ScreenController> Support::topViewController(
    std::shared_ptr<ScreenController> controller) {
    while (controller && controller->presentedController) {
        const auto presented = controller->presentedController;
        controller = isNavigationController(*presented) ? lastChild(*presented) : presented;
    }
    if (controller && isNavigationController(*controller)) return lastChild(*controller);
    return controller;
}

std::optional<std::string> Support::stringFromDictionary(const Json& dictionary,
                                                         std::string_view key) {
    return stringForKey(dictionary, key);
}

std::optional<double> Support::numberFromDictionary(const Json& dictionary, std::string_view key) {
    return numberForKey(dictionary, key);
}

}  // namespace supportsdk
