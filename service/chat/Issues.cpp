#include "service/chat/Issues.h"

#include "service/chat/Envelope.h"
#include "service/state/CredentialBlock.h"
#include "service/state/Identifiers.h"
#include "service/state/Journal.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

constexpr int firstIssue = 5001;

std::string now() {
    return dateTimeText(std::chrono::system_clock::now());
}

std::int64_t statusOf(const Json& issue) {
    return integerForKey(issue, "status").value_or(0);
}

}  // namespace

std::optional<Json> Issues::create(const Request& request) {
    const auto userId = stringForKey(request.customer, "members_users_id").value_or("");
    const auto id = std::to_string(store_.next("issue", firstIssue));
    const auto comm = rooms_.open(request.integrationId, id, request.customer);
    const auto account = rooms_.account(userId);
    if (!comm || !account) return std::nullopt;
    const auto commId = stringForKey(*comm, "comm_id").value_or("");
    const auto credentials =
        encryptCredentials({commId, account->jid, account->password, "127.0.0.1", rooms_.port(),
                            "members_users:" + userId + ";" + randomHex(4)},
                           request.apiKey);
    if (!credentials) return std::nullopt;

    Json issue = request.customer;
    issue.update({{"id", id},
                  {"integration", request.integrationId},
                  {"reference_num", "SC-" + id},
                  {"status", issueStatus::created},
                  {"type", request.callbackNumber ? "callback" : "chat"},
                  {"category", "Support"},
                  {"details", request.description},
                  {"created", now()},
                  {"updated", now()},
                  {"isRated", false},
                  {"comm_id", commId},
                  {"xmpp_data", *credentials}});
    if (request.callbackNumber) issue["callback_number"] = *request.callbackNumber;
    store_.put(kind::issue, id, issue);
    journal_.append("issue", {{"issue_id", id},
                              {"comm_id", commId},
                              {"status", issueStatus::created},
                              {"change", "created"}});
    return issue;
}

std::optional<Json> Issues::change(const std::string& id, const std::string& what,
                                   const std::function<bool(Json&)>& change) {
    bool changed = false;
    auto issue = store_.update(kind::issue, id, [&](Json& record) {
        changed = change(record);
        if (changed) record["updated"] = now();
    });
    if (issue && changed) {
        journal_.append("issue", {{"issue_id", id},
                                  {"comm_id", stringForKey(*issue, "comm_id").value_or("")},
                                  {"status", statusOf(*issue)},
                                  {"change", what}});
    }
    return issue;
}

void Issues::advance(const std::string& id, int status) {
    change(id, "status", [status](Json& issue) {
        if (statusOf(issue) >= status) return false;
        issue["status"] = status;
        return true;
    });
}

void Issues::take(const std::string& id, const std::string& technicianKey) {
    change(id, "taken", [&](Json& issue) {
        if (issue.contains("owner_key")) return false;
        issue["owner_key"] = technicianKey;
        return true;
    });
    advance(id, issueStatus::inProgress);
}

std::optional<Json> Issues::close(const std::string& id, int status,
                                  const std::string& resolution) {
    return change(id, "closed", [&](Json& issue) {
        if (statusOf(issue) >= issueStatus::resolved) return false;
        issue["status"] = status;
        issue["resolved"] = now();
        issue["resolution"] = resolution;
        return true;
    });
}

std::optional<Json> Issues::rate(const std::string& id, const Rating& rating) {
    return change(id, "rated", [&rating](Json& issue) {
        issue.update({{"isRated", true},
                      {"rating", rating.technician},
                      {"nps_rating", rating.recommendation},
                      {"rating_notes", rating.notes}});
        return true;
    });
}

Json Issues::forCaller(Json issue, const std::string& base) const {
    const auto commId = stringForKey(issue, "comm_id").value_or("");
    auto transcript = rooms_.transcript(commId, base);
    issue["transcripts"] = Json::object();
    if (!transcript.empty()) issue["transcripts"][commId] = std::move(transcript);
    if (const auto owner = stringForKey(issue, "owner_key"))
        issue["owner_user_avatar"] = base + avatarPath(*owner);
    issue.erase("integration");
    return issue;
}

}  // namespace supportsdk::service
