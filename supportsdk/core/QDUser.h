#pragma once

#include <optional>
#include <string>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// A person, for hosts; the kit itself works with the identity of Support. Fields carry the
/// service's names. A plain record: any thread, one at a time.
class SUPPORTSDK_API QDUser {
 public:
    /// Empties the record, but keeps `password`.
    void clear();

    /// "id", names, member and location, "email", "avatar" and "password", as far as not null.
    [[nodiscard]] Json dict() const;

    [[nodiscard]] std::optional<std::string> name() const { return entity_name; }
    [[nodiscard]] bool isAdminUser() const { return isAdminUser_; }
    [[nodiscard]] std::string debugDescription() const;

    /// Sets the entity, relation and status of `user` to what `dictionary` has as non-empty
    /// strings.
    static void populateQuorrandUser(QDUser& user, const Json& dictionary);

    bool invite = false;
    std::optional<std::string> id;
    std::optional<std::string> first_name;
    std::optional<std::string> last_name;
    std::optional<std::string> members_id;
    std::optional<std::string> members_locations_id;
    std::optional<std::string> nickname;
    std::optional<std::string> avatar;
    std::optional<std::string> email;
    std::optional<std::string> password;
    std::optional<std::string> sms_number;
    std::optional<std::string> lang;
    std::optional<std::string> entity_id;
    std::optional<std::string> entity_of;
    std::optional<std::string> entity_name;
    std::optional<std::string> related_id;
    std::optional<std::string> related_to;
    std::optional<std::string> related_name;
    std::optional<std::string> status;

 private:
    /// Nothing sets it.
    bool isAdminUser_ = false;
};

}  // namespace supportsdk
