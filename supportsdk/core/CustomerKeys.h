#pragma once

namespace supportsdk {

/// Keys of the customer information that a host hands over. The kit sends it as it is.

inline constexpr const char* kCustomerId = "members_id";
inline constexpr const char* kCustomerExternalId = "members_external_id";
inline constexpr const char* kCustomerLocationId = "members_locations_id";
inline constexpr const char* kCustomerLocationExternalId = "members_locations_external_id";
/// A further identifier of the location.
inline constexpr const char* kCustomerLocationMid = "members_locations_mid";
inline constexpr const char* kUserId = "members_users_id";
inline constexpr const char* kUserExternalId = "members_users_external_id";
inline constexpr const char* kUserEmail = "members_users_email";
inline constexpr const char* kUserPhone = "members_users_phone";

}  // namespace supportsdk
