#include "supportsdk/core/QDIssue.h"
#include "supportsdk/core/Support.h"
#include "supportsdk/launcher/RatingViewController.h"

namespace supportsdk {

void Support::createIssueWithCallbackNumber(const std::optional<std::string>& number,
                                            const std::optional<std::string>& description,
                                            RestCallback success, RestCallback failure) {
    if (!isMemberSet()) {
        // The service cannot file an issue that belongs to nobody.
        platform->mainQueue->post([failure = std::move(failure)] {
            if (failure) failure({{"status", 0}, {"message", "The customer is not known."}});
        });
        return;
    }
    Json body = {{"issues",
                  {{"members_id", identity.membersId.json()},
                   {"members_users_id", identity.membersUsersId.json()},
                   {"members_locations_id", identity.membersLocationsId.json()},
                   {"user_agent", clientAppIdentifier()}}}};
    if (number) body["callbackNumber"] = *number;
    if (description) body["description"] = *description;
    executePost("/issues/create", endpoint, body, strictly(std::move(success), std::move(failure)));
}

void Support::getIssue(const std::string& issueId, RestCallback success, RestCallback failure) {
    executeGet("/issues/" + issueId, endpoint, Json(),
               leniently(std::move(success), std::move(failure)));
}

void Support::rateIssue(const std::string& issueId, std::int64_t rating,
                        const std::optional<std::string>& description, RestCallback success,
                        RestCallback failure) {
    Json body = Json::object();
    if (identity.membersUsersId.isSet()) {
        // What the user chose is the rating of the technician; the other score is not asked for.
        body = {{"nps_rating", 0}, {"tech_rating", rating}};
        if (description) body["notes"] = *description;
    }
    executePost("/issues/rate/" + issueId, endpoint, body,
                leniently(std::move(success), std::move(failure)));
}

void Support::resolveIssue(const std::string& issueId, RestCallback success, RestCallback failure) {
    Json body = Json::object();
    if (identity.membersUsersId.isSet()) body["resolution"] = 1;
    executePost("/issues/resolve/" + issueId, endpoint, body,
                leniently(std::move(success), std::move(failure)));
}

void Support::cancelIssue(const std::string& issueId, RestCallback success, RestCallback failure) {
    Json body = Json::object();
    if (identity.membersUsersId.isSet()) body["members_users_id"] = identity.membersUsersId.json();
    executePost("/issues/cancel/" + issueId, endpoint, body,
                leniently(std::move(success), std::move(failure)));
}

void Support::refreshIssue(const std::optional<std::string>& issueId) {
    if (!issueId) return;
    rateableIssueId.reset();
    getIssue(
        *issueId,
        [weak = weak_from_this()](const Json& response) {
            const auto self = weak.lock();
            const auto issue = firstIssue(response);
            if (self && issue && !issue->isOpen()) self->rateableIssueId = issue->id;
        },
        [log = platform->log](const Json&) { log->write("failure"); });
}

void Support::displayRatingScreenFromButton(const std::shared_ptr<SupportButton>& button) {
    RatingViewController::create(shared_from_this(), button)->showFromView();
}

std::shared_ptr<QDIssue> Support::loadCurrentIssue() {
    const auto defaults = platform->userDefaults->standard();
    currentIssueId = defaults->string(kSupportSDKCurrentIssueId);
    xmppdata.reset();
    const auto stored = defaults->dictionary(kSupportSDKCurrentIssue);
    if (!stored) return nullptr;
    auto issue = std::make_shared<QDIssue>(*stored);
    xmppdata = issue->xmpp_data;
    return issue;
}

void Support::saveCurrentIssue(const std::shared_ptr<QDIssue>& issue) {
    const auto defaults = platform->userDefaults->standard();
    if (issue) {
        currentIssueId = issue->id;
        if (issue->id) {
            defaults->setValue(kSupportSDKCurrentIssueId, *issue->id);
        } else {
            defaults->remove(kSupportSDKCurrentIssueId);
        }
        defaults->setValue(kSupportSDKCurrentIssue, issue->dict());
    }
    defaults->flush();
}

void Support::clearCurrentIssue() {
    const auto defaults = platform->userDefaults->standard();
    defaults->remove(kSupportSDKCurrentIssueId);
    defaults->remove(kSupportSDKCurrentIssue);
    defaults->flush();
    currentIssueId.reset();
}

}  // namespace supportsdk
