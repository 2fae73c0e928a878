#pragma once

#include <optional>
#include <string>

#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// What the service's settings switch on, and the texts and addresses that belong to it. Everything
/// is off or null until settings have arrived.
struct Features {
    bool chatEnabled = false;
    bool callmeEnabled = false;
    bool kbEnabled = false;
    bool websiteEnabled = false;
    bool emailEnabled = false;
    bool phoneEnabled = false;
    bool formsEnabled = false;
    bool historyEnabled = false;
    bool journeysEnabled = false;
    bool supportProactiveEnabled = false;
    /// Kept; nothing consults it.
    bool supportScreenShareEnabled = false;

    bool supportUnavailable = false;
    std::optional<std::string> supportUnavailableSummary;

    std::optional<std::string> supportWebsite;
    /// The same, when it parses as an address.
    std::optional<std::string> supportWebsiteURL;
    std::optional<std::string> supportEmailAddress;
    std::optional<std::string> supportPhoneNumber;
    /// An array once settings have arrived.
    std::optional<Json> supportForms;
    std::optional<std::string> callMeButtonText;
    std::optional<std::string> callMeButtonConfirmation;
    /// An object once settings have arrived.
    std::optional<Json> advancedConfiguration;
    /// Once true, it stays true.
    bool isV2Settings = false;
};

/// Menu titles that the settings override; null keeps the theme's own.
struct ChannelTitles {
    std::optional<std::string> chatTitle;
    std::optional<std::string> callmeTitle;
    std::optional<std::string> kbTitle;
    std::optional<std::string> websiteTitle;
    std::optional<std::string> emailTitle;
    std::optional<std::string> phoneTitle;
    std::optional<std::string> formsTitle;
    std::optional<std::string> historyTitle;
    std::optional<std::string> journeysTitle;
};

}  // namespace supportsdk
