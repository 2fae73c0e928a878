#include <array>
#include <utility>

#include "supportsdk/core/DefaultsKeys.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/Support.h"

namespace supportsdk {

namespace {

struct IdentityField {
    IdentityValue Identity::*member;
    const char* responseKey;
    /// The key in the settings' default member, and in the user defaults.
    const char* storedKey;
};

constexpr std::array<IdentityField, 4> fields{{
    {&Identity::membersId, "members_id", defaultsKey::memberId},
    {&Identity::membersUsersId, "members_users_id", defaultsKey::memberUserId},
    {&Identity::membersLocationsId, "members_locations_id", defaultsKey::memberLocationId},
    {&Identity::membersDevicesId, "members_devices_id", defaultsKey::memberDeviceId},
}};

}  // namespace

void Support::setMemberInfo(const std::optional<Json>& dictionary) {
    if (!dictionary) return;
    for (const auto& field : fields) {
        identity.*field.member = IdentityValue(stringForKey(*dictionary, field.storedKey));
    }
    saveMemberInfo();
}

void Support::saveMemberInfo() {
    const auto defaults = platform->userDefaults->standard();
    for (const auto& field : fields) {
        const auto& value = identity.*field.member;
        if (value.hasValue()) defaults->setValue(field.storedKey, value.json());
    }
    if (identity.membersUsersId.hasValue()) {
        defaults->setValue(defaultsKey::formsUserKey, identity.membersUsersId.json());
    }
}

bool Support::isMemberSet() const {
    return identity.membersId.isSet() && identity.membersUsersId.isSet() &&
           identity.membersLocationsId.isSet();
}

void Support::getCustomer(const Json& information, RestCallback success, RestCallback failure) {
    auto resolved = [weak = weak_from_this(), success = std::move(success)](const Json& response) {
        if (const auto self = weak.lock()) self->customerDidResolve(response);
        if (success) success(response);
    };
    executePost("/customers/resolve", endpoint, {{"ids", information}},
                leniently(std::move(resolved), std::move(failure)));
}

void Support::customerDidResolve(const Json& response) {
    if (isRetired_) return;
    for (const auto& field : fields) {
        identity.*field.member = IdentityValue(valueForKey(response, field.responseKey));
    }
    saveMemberInfo();
    getHistory();
}

void Support::getCallbackNumber(RestCallback success, RestCallback failure) {
    executeGet("/customers/getCallbackNumber/" + identity.membersUsersId.text(), endpoint, Json(),
               leniently(std::move(success), std::move(failure)));
}

}  // namespace supportsdk
