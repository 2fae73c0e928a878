#include "supportsdk/core/Ciphers.h"
#include "supportsdk/core/Configuration.h"
#include "supportsdk/core/Credentials.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/Support.h"

namespace supportsdk {

void Support::getSettings() {
    if (isCloudConfigComplete) return;
    executeGet("/app/get", endpoint, Json(), [weak = weak_from_this()](const Json& response) {
        if (const auto self = weak.lock()) self->settingsDidArrive(response);
    });
}

void Support::settingsDidArrive(const Json& response) {
    if (!response.is_object() || isRetired_) return;
    const auto listener = delegate.lock();
    if (numberForKey(response, "status") != 200.0) {
        if (config->isTryingNewConfiguration) {
            config->restoreConfiguration();
            platform->progress->showError(
                platform->localizer->localized("Unable to retrieve settings for that server."));
            return;
        }
        disableAllComponents();
        if (listener) listener->supportDidFailToRetrieveSettings(response);
        return;
    }
    processSettings(response);
    isCloudConfigComplete = true;
    if (config->isTryingNewConfiguration) config->saveConfiguration();
    if (listener) listener->supportDidRetrieveSettings(response);
}

void Support::processSettings(const Json& response) {
    features.advancedConfiguration = dictionaryForKey(response, "advancedConfiguration");
    if (isComponentLayout(response)) {
        processV2Settings(dictionaryForKey(response, "advancedConfiguration"));
    } else {
        processV1Settings(response);
    }
}

void Support::processV1Settings(const Json& response) {
    apply(readFlatSettings(response, features, callMeTexts()));
}

void Support::processV2Settings(const Json& advanced) {
    apply(readComponentSettings(advanced, features, callMeTexts()));
}

CallMeTexts Support::callMeTexts() const {
    const CallMeTexts english;
    return {platform->localizer->localized(english.buttonText),
            platform->localizer->localized(english.buttonConfirmation)};
}

void Support::apply(const ReadSettings& settings) {
    features = settings.features;
    setMemberInfo(settings.defaultMember);
    applyTheme(settings.titles, settings.theme);
}

void Support::disableAllComponents() {
    features = withoutChannels(std::move(features));
}

std::optional<Json> Support::extractXmppInformation(const std::optional<std::string>& text) const {
    if (!text || !config->configAPIKey) return std::nullopt;
    return openCredentialBlock(*text, *config->configAPIKey);
}

std::optional<Bytes> Support::AES256Encrypt(std::span<const std::byte> data, std::string_view key) {
    constexpr std::array<std::byte, 16> zero{};
    return encryptAes256Cbc(data, key, LongKey::dropped, zero);
}

std::optional<Bytes> Support::AES256Decrypt(std::span<const std::byte> data, std::string_view key) {
    return decryptAes256Ecb(data, key, LongKey::cut);
}

std::optional<Bytes> Support::AES256Decrypt(std::span<const std::byte> data, std::string_view key,
                                            std::span<const std::byte, 16> iv) {
    return decryptAes256Cbc(data, key, LongKey::dropped, iv);
}

}  // namespace supportsdk
