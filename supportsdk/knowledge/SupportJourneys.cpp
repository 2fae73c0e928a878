#include <cctype>

#include "supportsdk/core/Fields.h"
#include "supportsdk/core/Support.h"
#include "supportsdk/knowledge/JourneyModel.h"

namespace supportsdk {

namespace {

/// A failure dictionary carries response headers, the session token possibly among them.
Json withoutCredentials(Json response) {
    constexpr std::string_view prefix = "x-quorrand-";
    for (auto entry = response.begin(); entry != response.end();) {
        std::string name = entry.key();
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char letter) { return std::tolower(letter); });
        entry = name.starts_with(prefix) ? response.erase(entry) : std::next(entry);
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
               [weak = weak_from_this(), done = std::move(completion)](const Json& response) {
                   const auto self = weak.lock();
                   if (!self) return;
                   if (integerForKey(response, "status") != 200) {
                       self->platform->log->write(dumpJson(withoutCredentials(response)));
                   } else {
                       for (const auto& entry : arrayForKey(response, "results"))
                           self->journeys.push_back(std::make_shared<JourneyModel>(entry));
                   }
                   if (done) done();
               });
}

}  // namespace supportsdk
