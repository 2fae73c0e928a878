#pragma once

namespace supportsdk {

/// Top-level keys of the settings in their flat layout.

/// Known to hosts, but not read: chat goes with kKeySupportCallmeEnabled.
inline constexpr const char* kKeySupportChatEnabled = "supportChatEnabled";
inline constexpr const char* kKeySupportCallmeEnabled = "supportCallmeEnabled";
inline constexpr const char* kKeySupportKBEnabled = "supportKBEnabled";
inline constexpr const char* kKeySupportWebsiteEnabled = "supportWebsiteEnabled";
inline constexpr const char* kKeySupportEmailEnabled = "supportEmailEnabled";
inline constexpr const char* kKeySupportPhoneEnabled = "supportPhoneEnabled";
inline constexpr const char* kKeySupportFormsEnabled = "supportFormsEnabled";
inline constexpr const char* kKeySupportHistoryEnabled = "supportHistoryEnabled";
inline constexpr const char* kKeySupportProactiveEnabled = "supportProactiveEnabled";
inline constexpr const char* kKeySupportScreenShareEnabled = "supportScreenShareEnabled";
inline constexpr const char* kKeySupportWebsite = "supportWebsite";
inline constexpr const char* kKeySupportEmail = "supportEmail";
inline constexpr const char* kKeySupportPhone = "supportPhone";
inline constexpr const char* kKeySupportForms = "supportForms";

}  // namespace supportsdk
