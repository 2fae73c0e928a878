#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Localizer.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// Where the current issue is kept in the user defaults: its id, and the dictionary of dict().
inline constexpr const char* kSupportSDKCurrentIssueId = "supportSDKCurrentIssueId";
inline constexpr const char* kSupportSDKCurrentIssue = "supportSDKCurrentIssue";

/// A support case. Fields carry the service's names; times and identifiers stay the strings that
/// the service sends. A plain record: any thread, one at a time.
class SUPPORTSDK_API QDIssue {
 public:
    QDIssue() = default;
    /// Reads an issue record of the service, or what dict() wrote. Values of another type count as
    /// missing.
    explicit QDIssue(const Json& dictionary);

    /// Empties the record, but keeps `resolved`, `owner_user_avatar`, `rating`, `transcripts` and
    /// `isTemporary`.
    void clear();

    /// For storage: every field that is not null, and "isRated" always. The avatar, the transcripts
    /// and `isTemporary` are not in it.
    [[nodiscard]] Json dict() const;

    /// Status below 7; an unknown status counts as open.
    [[nodiscard]] bool isOpen() const;
    /// Status exactly 7.
    [[nodiscard]] bool isResolved() const;
    /// Status above 7.
    [[nodiscard]] bool isClosed() const;
    /// "Open", "Resolved" or "Closed", translated.
    [[nodiscard]] std::string displayStatus(const Localizer& localizer) const;
    [[nodiscard]] std::string debugDescription() const;

    /// The user has rated the issue.
    bool isRated = false;
    /// Made on the device while offline; never stored.
    bool isTemporary = false;
    std::optional<std::string> arrival_time;
    std::optional<std::string> category;
    std::optional<std::string> created;
    std::optional<std::string> resolved;
    std::optional<std::string> departure_time;
    std::optional<std::string> details;
    std::optional<std::string> enroute_time;
    std::optional<std::string> id;
    std::optional<std::string> job;
    std::optional<std::string> members_email;
    std::optional<std::string> members_id;
    std::optional<std::string> members_locations_id;
    std::optional<std::string> members_locations_name;
    std::optional<std::string> members_name;
    std::optional<std::string> members_users_email;
    std::optional<std::string> members_users_id;
    std::optional<std::string> members_users_name;
    /// The number that the user is shown.
    std::optional<std::string> reference_num;
    std::optional<std::string> remote_id;
    std::optional<std::string> resolution;
    std::optional<std::string> scheduled_time;
    /// Avatar of the agent who owns the issue.
    std::optional<std::string> owner_user_avatar;
    std::optional<std::int64_t> status;
    std::optional<std::int64_t> rating;
    std::optional<std::string> type;
    std::optional<std::string> updated;
    /// The encrypted credential block of the chat.
    std::optional<std::string> xmpp_data;
    /// Identifier of the chat record.
    std::optional<std::string> comm_id;
    /// Transcripts by comm_id; an object once the record was read.
    std::optional<Json> transcripts;
};

/// The issue that an answer of the service speaks of: the first under "results". Null when there is
/// none.
SUPPORTSDK_API std::shared_ptr<QDIssue> firstIssue(const Json& response);

}  // namespace supportsdk
