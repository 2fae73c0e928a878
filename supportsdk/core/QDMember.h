#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "supportsdk/core/QDLocation.h"
#include "supportsdk/core/QDUser.h"
#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// The customer's account in full, for hosts; the kit itself works with the identity of Support.
/// Fields carry the service's names. A plain record: any thread, one at a time.
class SUPPORTSDK_API QDMember {
 public:
    /// Empties the record, but keeps `partners`, `image`, `user_nickname`, `user_avatar` and
    /// `user_image`; `issue_refresh` goes back to 15.
    void clear();

    /// Whether there is an `email`.
    [[nodiscard]] bool isPopulated() const { return email.has_value(); }

    /// The account's name, status, language and address, as far as not null.
    [[nodiscard]] Json getMembersDict() const;
    /// The user's names and e-mail address, as far as not null.
    [[nodiscard]] Json getMembersUsersDict() const;

    /// Reads a member record of the service. Values that are missing or of another type leave their
    /// field alone.
    void populateMemberWithDict(const Json& dictionary);
    /// Replaces `member_users`, unless "member_users" is no array.
    void populateMembersUsersWithDict(const Json& dictionary);
    /// Replaces `member_locations`, unless "member_locations" is no array.
    void populateMembersLocationsWithDict(const Json& dictionary);

    static std::optional<std::string> stringFromDictionary(const Json& dictionary,
                                                           std::string_view key);
    static std::optional<double> numberFromDictionary(const Json& dictionary, std::string_view key);

    [[nodiscard]] std::string debugDescription() const;

    bool private_label = false;
    std::optional<std::string> member_name;
    std::optional<std::string> members_id;
    std::optional<std::string> members_users_id;
    /// An object.
    std::optional<Json> partners;
    std::optional<std::string> first_name;
    std::optional<std::string> last_name;
    std::optional<std::string> email;
    std::optional<std::int64_t> status;
    std::optional<std::string> sk_id;
    std::optional<std::string> sk_pwd;
    std::optional<std::string> oovoo_conference_id;
    /// The issue refresh period.
    std::optional<double> issue_refresh = 15;
    std::optional<std::string> xmpp_comm_id;
    std::optional<std::string> xmpp_jid;
    std::optional<std::string> xmpp_password;
    std::optional<std::string> xmpp_chimebot_jid;
    std::optional<std::string> xmpp_host;
    std::optional<std::string> xmpp_port;
    std::optional<std::string> xmpp_resource;
    std::optional<std::string> preferred_lang;
    std::optional<std::string> name_legal;
    std::optional<std::string> street_1;
    std::optional<std::string> street_2;
    std::optional<std::string> city;
    std::optional<std::string> state;
    std::optional<std::string> zipcode;
    std::optional<std::string> mobile;
    std::optional<std::string> avatar;
    std::optional<std::string> image;
    std::optional<std::string> user_nickname;
    std::optional<std::string> user_avatar;
    std::optional<std::string> user_image;
    std::optional<std::string> nickname;
    std::optional<std::string> lang;
    std::optional<std::string> sms_number;
    std::optional<std::string> sponsor;
    std::optional<double> latitude;
    std::optional<double> longitude;
    std::optional<std::string> brand_color1;
    std::optional<std::string> brand_logo_1x;
    std::optional<std::string> brand_logo_2x;
    std::optional<std::string> brand_logo_3x;
    std::vector<QDUser> member_users;
    std::vector<QDLocation> member_locations;

 private:
    void readAccount(const Json& member);
    void readUser(const Json& user);
};

}  // namespace supportsdk
