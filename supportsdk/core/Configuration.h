#pragma once

#include <optional>
#include <string>

#include "supportsdk/core/Deployment.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/HttpClient.h"
#include "supportsdk/platform/Images.h"
#include "supportsdk/platform/Platform.h"

namespace supportsdk {

/// The configuration in use: where the service is and who asks. Another one can be put on trial and
/// rolled back, and a developer's one is kept across launches. Main thread only.
class SUPPORTSDK_API Configuration {
 public:
    /// Keeps `dictionary` as the default, and uses the developer's stored configuration if there is
    /// one, else `dictionary`. What is no object counts as none. Blocks as populate() does.
    Configuration(const Json& dictionary, PlatformPtr platform);

    /// Reads every field anew; a key that is missing empties its field. Null changes nothing.
    /// Blocks while the button's image is loaded, up to 10 seconds.
    void populate(const std::optional<Json>& dictionary);

    /// Uses `dictionary` until saveConfiguration() or restoreConfiguration() ends the trial. During
    /// a trial, it is the configuration on trial that becomes the backup.
    void tryNewConfiguration(const Json& dictionary);
    /// Ends the trial: the backup is back in use, and nothing is stored.
    void restoreConfiguration();
    /// Ends the trial: what is in use is stored and flushed.
    void saveConfiguration();

    [[nodiscard]] std::optional<Json> getSavedConfiguration() const;
    void clearSavedConfiguration();
    void saveDefaultConfiguration(const Json& dictionary);
    [[nodiscard]] std::optional<Json> getDefaultConfiguration() const;
    /// Removes the developer's configuration, goes back to the default one and ends the trial.
    void restoreDefaultConfiguration();

    /// `host` with the legacy domain suffix replaced by the current one, wherever it stands.
    [[nodiscard]] std::string changeDomain(const std::string& host) const;
    /// `host` with every "quillpost" replaced by `to`.
    [[nodiscard]] static std::string redirect(const std::string& host, const std::string& to);

    /// Token, integration and key as request headers; what is null is left out.
    [[nodiscard]] HttpHeaders getHeaders() const;
    [[nodiscard]] std::optional<std::string> host() const { return configAPIHost; }
    [[nodiscard]] std::optional<Json> json() const { return configJSON; }
    [[nodiscard]] ImagePtr getButtonImage() const { return configButtonImage; }
    /// The picture at `url`; null when it is no address, cannot be had within 10 seconds, is larger
    /// than 8 MiB, or is no picture. Blocks.
    [[nodiscard]] ImagePtr imageWithUrl(const std::optional<std::string>& url) const;

    static bool isDeveloperMode(const Platform& platform);
    /// Switching off also removes the developer's stored configuration; switching on does not touch
    /// it.
    static void enableDeveloperMode(const Platform& platform, bool enabled);

    const Deployment deployment;

    bool isTryingNewConfiguration = false;
    /// As it was given, unchanged.
    std::optional<Json> configJSON;
    std::optional<std::string> configAPIHost;
    std::optional<std::string> configIntegrationId;
    std::optional<std::string> configAPIKey;
    /// Kept; nothing uses it.
    std::optional<std::string> configPartnerTeam;
    std::optional<std::string> configPartnerToken;
    std::optional<std::string> configPrivateKey;
    std::optional<std::string> configButtonURL;
    /// For the host to use: the kit's default member comes with the settings.
    std::optional<std::string> configDefaultMemberId;
    std::optional<std::string> configDefaultMemberUserId;
    std::optional<std::string> configDefaultMemberLocationId;
    ImagePtr configButtonImage;
    /// What to go back to while a configuration is on trial.
    std::optional<Json> backupConfiguration;

 private:
    void endTrial();

    PlatformPtr platform_;
};

}  // namespace supportsdk
