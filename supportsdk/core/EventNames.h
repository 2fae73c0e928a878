#pragma once

namespace supportsdk {

/// Events: what the kit tells its host on the event channel (EventManager). None has user
/// information.
namespace event {
inline constexpr const char* sdkStarted = "com.goquorrand.event.sdk.started";
inline constexpr const char* sdkEnded = "com.goquorrand.event.sdk.ended";
inline constexpr const char* menuStarted = "com.goquorrand.event.menu.started";
inline constexpr const char* menuEnded = "com.goquorrand.event.menu.ended";
inline constexpr const char* chatStarted = "com.goquorrand.event.chat.started";
inline constexpr const char* chatEnded = "com.goquorrand.event.chat.ended";
inline constexpr const char* chatIssueResolved = "com.goquorrand.event.chat.issue_resolved";
inline constexpr const char* knowledgeStarted = "com.goquorrand.event.knowledge.started";
inline constexpr const char* knowledgeEnded = "com.goquorrand.event.knowledge.ended";
inline constexpr const char* formStarted = "com.goquorrand.event.form.started";
inline constexpr const char* formSubmitted = "com.goquorrand.event.form.submitted";
inline constexpr const char* formEnded = "com.goquorrand.event.form.ended";
inline constexpr const char* historyStarted = "com.goquorrand.event.history.started";
inline constexpr const char* historyEnded = "com.goquorrand.event.history.ended";
}  // namespace event

/// Requests: what a host asks of the kit on the same channel.
namespace request {
inline constexpr const char* exit = "com.goquorrand.request.supportsdk.exit";
inline constexpr const char* chatExit = "com.goquorrand.request.chat.exit";
inline constexpr const char* chatExitResolveIssue =
    "com.goquorrand.request.chat.exit_resolve_issue";
}  // namespace request

/// Notifications outside the event channel.
namespace notification {
/// The object is the number of unread chat lines.
inline constexpr const char* chatUnreadCountUpdated = "com.goquorrand.chat.unreadcountupdated";
/// User information "room" and "token". Hosts listen under the misspelt name.
inline constexpr const char* roomInformation =
    "com.goquorrand.supportsdk.RoomInformationNorification";
/// The object is the NetworkStatus.
inline constexpr const char* networkReachabilityChanged = "kNetworkReachabilityChangedNotification";
}  // namespace notification

}  // namespace supportsdk
