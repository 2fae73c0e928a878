#pragma once

#include <optional>
#include <string>

#include "supportsdk/core/Settings.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Platform.h"

namespace supportsdk {

/// The theme: menu texts, and how the menu looks. Its JSON comes from the kit's default file, from
/// the host and from the service's settings, each applied over the last. Main thread only.
class SUPPORTSDK_API Appearance {
 public:
    explicit Appearance(PlatformPtr platform);

    /// Applies the kit's default theme, when there is one. Runs once; later calls do nothing.
    void configure();

    /// Applies a theme given as JSON text. Returns why it does not parse, and then changes nothing;
    /// nothing on success.
    std::optional<std::string> configureWithJSON(const std::string& json);

    /// Applies a theme object. Values of the wrong type are skipped.
    void configureWithSettings(const Json& settings);

    /// Whether the system asks for a dark look, now.
    [[nodiscard]] bool darkMode() const;

    // Texts of the menu's entries: the title, when one is set, else what the theme says, else
    // nothing.
    [[nodiscard]] std::optional<std::string> chatMenuText() const;
    [[nodiscard]] std::optional<std::string> callMeMenuText() const;
    [[nodiscard]] std::optional<std::string> knowledgeMenuText() const;
    [[nodiscard]] std::optional<std::string> webMenuText() const;
    [[nodiscard]] std::optional<std::string> emailMenuText() const;
    [[nodiscard]] std::optional<std::string> phoneMenuText() const;
    [[nodiscard]] std::optional<std::string> formsMenuText() const;
    [[nodiscard]] std::optional<std::string> historyMenuText() const;
    [[nodiscard]] std::optional<std::string> journeysMenuText() const;
    [[nodiscard]] std::optional<std::string> exitMenuText() const;

    /// "Support" unless the theme has another one.
    [[nodiscard]] std::string menuHeading() const;

    /// These win over the theme's texts while they are set.
    ChannelTitles titles;
    /// The theme's menu style in lower case, whether known or not.
    std::optional<std::string> menuStyle;

 private:
    void processMenuAppearance(const Json& settings);
    void addMenuInfo(const Json& info, const std::string& key);
    [[nodiscard]] std::optional<std::string> menuText(const std::optional<std::string>& title,
                                                      const char* key) const;

    PlatformPtr platform_;
    bool isConfigured_ = false;
    Json menuConfiguration_ = Json::object();
    Json menuAppearance_ = Json::object();
};

}  // namespace supportsdk
