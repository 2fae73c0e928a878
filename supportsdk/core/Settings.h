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

/// What stands where the settings have no text for call-me; translated by the caller.
struct CallMeTexts {
    std::string buttonText = "Call Me";
    std::string buttonConfirmation = "Thank you. We will contact you as soon as possible.";
};

/// What a settings response says, apart from where it goes.
struct ReadSettings {
    Features features;
    ChannelTitles titles;
    /// An object; empty when there is none.
    Json defaultMember;
    /// The object that holds the theme.
    Json theme;
};

/// Whether the response is of the layout with components: its "advancedConfiguration" has the
/// string "2" as its "version".
bool isComponentLayout(const Json& response);

/// Reads the flat layout from the whole response. What it does not speak of keeps the value it has
/// in `former`, the parsed website address among it when no website is named.
ReadSettings readFlatSettings(const Json& response, const Features& former,
                              const CallMeTexts& texts);

/// Reads the layout with components from the "advancedConfiguration" object. A component that is
/// missing counts as an empty one, so that none of its former values survives.
ReadSettings readComponentSettings(const Json& advanced, const Features& former,
                                   const CallMeTexts& texts);

/// `former` with the nine channels off, and nothing else changed.
Features withoutChannels(Features former);

}  // namespace supportsdk
