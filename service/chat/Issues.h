#pragma once

#include <optional>
#include <string>

#include "service/chat/ChatRooms.h"
#include "service/state/Store.h"

namespace supportsdk::service {

class Journal;

/// What an issue's "status" says. Below 7 it is open, above it is closed.
namespace issueStatus {
inline constexpr int created = 1;
inline constexpr int customerWaits = 2;
inline constexpr int inProgress = 3;
inline constexpr int resolved = 7;
inline constexpr int cancelled = 8;
}  // namespace issueStatus

/// The life of support cases. Each change enters the journal as "issue" (issue_id, comm_id,
/// status, and as "change" created, status, taken, closed or rated).
/// Any thread.
class Issues {
 public:
    Issues(Store& store, ChatRooms& rooms, Journal& journal)
        : store_(store), rooms_(rooms), journal_(journal) {}

    struct Request {
        Json customer;
        std::string integrationId;
        std::string apiKey;
        std::string description;
        std::optional<std::string> callbackNumber;
    };

    struct Rating {
        std::int64_t recommendation = 0;
        std::int64_t technician = 0;
        std::string notes;
    };

    /// A new case with a chat and its encrypted credentials; nothing when the chat server is down.
    [[nodiscard]] std::optional<Json> create(const Request& request);

    /// Moves an open case on; a step back does nothing.
    void advance(const std::string& id, int status);
    /// A technician works on it from now on; the first one owns it.
    void take(const std::string& id, const std::string& technicianKey);
    /// The issue as it is then; nothing when there is none. A closed case stays as it is.
    std::optional<Json> close(const std::string& id, int status, const std::string& resolution);
    std::optional<Json> rate(const std::string& id, const Rating& rating);

    /// The record as callers get it, with the transcripts of its chat.
    [[nodiscard]] Json forCaller(Json issue, const std::string& base) const;

 private:
    std::optional<Json> change(const std::string& id, const std::string& what,
                               const std::function<bool(Json&)>& change);

    Store& store_;
    ChatRooms& rooms_;
    Journal& journal_;
};

}  // namespace supportsdk::service
