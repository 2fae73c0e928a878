#include "service/rest/Desk.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

const Answer unknownIssue = failure(404, "This issue is unknown.");

/// What the caller gets to see of an issue that was just changed.
Answer one(const Desk& desk, const Call& call, const std::optional<Json>& issue) {
    if (!issue) return unknownIssue;
    return results(Json::array({desk.issues.forCaller(*issue, call.base)}));
}

Answer create(const Desk& desk, const Call& call) {
    const auto& ids = dictionaryForKey(call.body, "issues");
    for (const char* key :
         {"members_id", "members_users_id", "members_locations_id", "user_agent"}) {
        if (!stringForKey(ids, key)) return failure(400, std::string(key) + " is missing.");
    }
    const auto customer =
        findOwn(desk, kind::customer, *stringForKey(ids, "members_users_id"), call);
    if (!customer || stringForKey(*customer, "members_id") != stringForKey(ids, "members_id"))
        return failure(404, "This customer is unknown.");
    const auto issue = desk.issues.create({*customer, call.integrationId,
                                           stringForKey(call.integration, "apiKey").value_or(""),
                                           stringForKey(call.body, "description").value_or(""),
                                           stringForKey(call.body, "callbackNumber")});
    if (!issue) return failure(503, "The chat server is down.");
    return one(desk, call, issue);
}

Answer history(const Desk& desk, const Call& call) {
    const auto location = call.parameter("members_locations_id");
    if (!location) return failure(400, "members_locations_id is missing.");
    Json list = Json::array();
    for (const auto& issue : listOwn(desk, kind::issue, call)) {
        if (stringForKey(issue, "members_locations_id") == location)
            list.push_back(desk.issues.forCaller(issue, call.base));
    }
    return results(std::move(list));
}

/// An empty object comes from a caller who does not know who rates: it is taken and rates nothing.
Answer rate(const Desk& desk, const Call& call) {
    constexpr std::int64_t best = 5;
    const auto issue = findOwn(desk, kind::issue, call.id, call);
    if (!issue) return unknownIssue;
    if (call.body.empty()) return one(desk, call, issue);
    const auto rating = integerForKey(call.body, "tech_rating");
    if (!rating || *rating < 0 || *rating > best)
        return failure(400, "tech_rating is not a number from 0 to 5.");
    return one(desk, call,
               desk.issues.rate(call.id, {integerForKey(call.body, "nps_rating").value_or(0),
                                          *rating, stringForKey(call.body, "notes").value_or("")}));
}

/// An issue that is closed already cannot be closed otherwise: "success" is then false.
Answer close(const Desk& desk, const Call& call, int status, const std::string& resolution) {
    if (!findOwn(desk, kind::issue, call.id, call)) return unknownIssue;
    const auto issue = desk.issues.close(call.id, status, resolution);
    if (!issue) return unknownIssue;
    const bool success = integerForKey(*issue, "status") == status;
    return ok({{"success", success},
               {"message", success ? "" : "This issue is closed already."},
               {"results", Json::array({desk.issues.forCaller(*issue, call.base)})}});
}

}  // namespace

void addIssueRoutes(Router& router, Desk& desk) {
    router.add("POST", "/sdk/v1/issues/create", Body::json,
               [&desk](Call& call) { return create(desk, call); });
    router.add("GET", "/sdk/v1/issues/history", Body::none,
               [&desk](Call& call) { return history(desk, call); });
    router.add("POST", "/sdk/v1/issues/rate/*", Body::json,
               [&desk](Call& call) { return rate(desk, call); });
    router.add("POST", "/sdk/v1/issues/resolve/*", Body::json, [&desk](Call& call) {
        return close(desk, call, issueStatus::resolved, "Resolved by the customer");
    });
    router.add("POST", "/sdk/v1/issues/cancel/*", Body::json, [&desk](Call& call) {
        return close(desk, call, issueStatus::cancelled, "Cancelled by the customer");
    });
    router.add("GET", "/sdk/v1/issues/*", Body::none, [&desk](Call& call) {
        return one(desk, call, findOwn(desk, kind::issue, call.id, call));
    });
}

}  // namespace supportsdk::service
