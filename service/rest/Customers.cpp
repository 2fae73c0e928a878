#include <algorithm>
#include <array>

#include "service/rest/Desk.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

constexpr std::array identifiers{
    "members_id",          "members_external_id",       "members_locations_id",
    "members_users_id",    "members_users_external_id", "members_locations_external_id",
    "members_users_email", "members_users_phone",       "members_locations_mid"};

bool agrees(const Json& customer, const Json& ids) {
    return std::all_of(identifiers.begin(), identifiers.end(), [&](const char* key) {
        const auto wanted = stringForKey(ids, key);
        return !wanted || stringForKey(customer, key) == wanted;
    });
}

Answer resolve(const Desk& desk, const Call& call) {
    const auto& ids = dictionaryForKey(call.body, "ids");
    const bool usable = std::any_of(identifiers.begin(), identifiers.end(), [&](const char* key) {
        return stringForKey(ids, key).has_value();
    });
    if (!usable) return failure(400, "\"ids\" names no customer.");
    const auto customers = listOwn(desk, kind::customer, call);
    const auto found = std::find_if(customers.begin(), customers.end(),
                                    [&](const Json& customer) { return agrees(customer, ids); });
    if (found == customers.end()) return failure(404, "This customer is unknown.");
    Json answer = Json::object({{"results", Json::array({*found})}});
    for (const char* key :
         {"members_id", "members_users_id", "members_locations_id", "members_devices_id"}) {
        if (const auto id = stringForKey(*found, key)) answer[key] = *id;
    }
    return ok(answer);
}

Answer callbackNumber(const Desk& desk, const Call& call) {
    const auto customer = findOwn(desk, kind::customer, call.id, call);
    if (!customer) return failure(404, "This customer is unknown.");
    return ok({{"callback_number", stringForKey(*customer, "members_users_phone").value_or("")}});
}

}  // namespace

void addCustomerRoutes(Router& router, Desk& desk) {
    router.add("POST", "/sdk/v1/customers/resolve", Body::json,
               [&desk](Call& call) { return resolve(desk, call); });
    router.add("GET", "/sdk/v1/customers/getCallbackNumber/*", Body::none,
               [&desk](Call& call) { return callbackNumber(desk, call); });
}

}  // namespace supportsdk::service
