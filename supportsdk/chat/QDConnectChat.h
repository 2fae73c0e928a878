#pragma once

#include <optional>
#include <string>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// A chat record of the service. Values of another type than expected count as missing.
class SUPPORTSDK_API QDConnectChat {
 public:
    QDConnectChat() = default;
    /// From the answer to chatGet().
    explicit QDConnectChat(const Json& response) { populate(response); }

    void populate(const Json& response);

    /// The service does not send it; set by whoever asked for the record.
    std::optional<std::string> comm_id;
    std::optional<std::string> created;
    Json participants = Json::array();
    /// Participant key to an object with the participant's details.
    Json participants_eligible = Json::object();
    /// The room's JID, or the name of a call's room.
    std::optional<std::string> external_id;
    std::optional<std::string> title;
    std::optional<std::string> accessToken;
};

}  // namespace supportsdk
