#include "supportsdk/core/Fields.h"
#include "supportsdk/core/LowerCased.h"
#include "supportsdk/core/Support.h"
#include "supportsdk/knowledge/JourneyModel.h"

namespace supportsdk {

namespace {

/// A failure dictionary carries response headers, the session token possibly among them.
Json withoutCredentials(Json response) {
    constexpr std::string_view prefix = "x-quorrand-";
    for (auto entry = response.begin(); entry != response.end();) {
        const bool isOurs = lowerCased(entry.key()).starts_with(prefix);
        entry = isOurs ? response.erase(entry) : std::next(entry);
    }
    return response;
}

}  // namespace

void Support::getJourneysWithCompletion(std::function<void()> completion) {
    journeys.clear();
    Json parameters;
    if (identity.membersLocationsId.isSet()) {
        parameters["members_locations_id"] = identity.membersLocationsId.json();
    } else if (identity.membersId.isSet()) {
        parameters["members_id"] = identity.membersId.json();
    }
    executeGet("/journeys/data", endpoint, parameters,
               [weak = weak_from_this(), request = ++latestJourneysRequest_,
                done = std::move(completion)](const Json& response) {
                   const auto self = weak.lock();
                   if (!self) return;
                   // Of two requests the earlier may belong to a customer of before.
                   if (request == self->latestJourneysRequest_) self->journeysDidArrive(response);
                   if (done) done();
               });
}

void Support::journeysDidArrive(const Json& response) {
    if (integerForKey(response, "status") != 200) {
        platform->log->write(dumpJson(withoutCredentials(response)));
        return;
    }
    for (const auto& entry : arrayForKey(response, "results"))
        journeys.push_back(std::make_shared<JourneyModel>(entry));
}

}  // namespace supportsdk
