#pragma once

/// Every key that the kit keeps in the user defaults. Stored data depends on the spellings, the odd
/// ones included. The current issue's two keys stand in core/QDIssue.h.
namespace supportsdk::defaultsKey {

// Developer mode and the configurations.
inline constexpr const char* devModeEnabled = "com.goquorrand.supportsdk.dev_mode_enabled";
inline constexpr const char* devModeConfiguration =
    "com.goquorrand.supportsdk.dev_mode_json_config";
inline constexpr const char* defaultConfiguration =
    "com.goquorrand.supportsdk.dev_mode_json_config_default";

// What ran at the latest start.
inline constexpr const char* versionLastApp = "com.goquorrand.supportsdk.version_last_app";
inline constexpr const char* buildLastApp = "com.goquorrand.supportsdk.build_last_app";
inline constexpr const char* versionLastSDK = "com.goquorrand.supportsdk.version_last_sdk";
inline constexpr const char* buildLastSDK = "com.goquorrand.supportsdk.build_last_sdk";

// The identity: written for others, never read back.
inline constexpr const char* memberId = "memberId";
inline constexpr const char* memberUserId = "memberUserId";
inline constexpr const char* memberLocationId = "memberLocationId";
inline constexpr const char* memberDeviceId = "memberDeviceId";

// Forms: whose values are stored, and the values.
inline constexpr const char* formsUserKey = "com.goquorrand.forms.userKey";
inline constexpr const char* formsFields = "com.goquorrand.forms.fields";

inline constexpr const char* recentSearches = "com.goquorrand.store.recentsearches";

// History filters. The "n" too many stays: values are stored under it.
inline constexpr const char* historySortDescending = "com.goquorrandn.history.sort_descending";
inline constexpr const char* historyShowOpen = "com.goquorrandn.history.show_open";
inline constexpr const char* historyShowResolved = "com.goquorrandn.history.show_resolved";
inline constexpr const char* historyShowClosed = "com.goquorrandn.history.show_closed";

inline constexpr const char* chatHistory = "QuorrandChatHistory";

// Written by the host application, read by the kit.
inline constexpr const char* cameraResolutionLevel = "settings.camera_resolutionLevel";
inline constexpr const char* annotationColor = "MyColor";

// The suite shared with the screen broadcast extension, and its keys.
inline constexpr const char* broadcastSuite = "group.com.goquorrand.BroadcastExtension";
inline constexpr const char* broadcastRoomName = "roomName";
inline constexpr const char* broadcastToken = "token";

}  // namespace supportsdk::defaultsKey
