#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Values.h"

namespace supportsdk {

/// A stage of a journey, as the service sent it: what has another type is null.
class SUPPORTSDK_API JourneyStageModel {
 public:
    explicit JourneyStageModel(const Json& dictionary);

    std::optional<std::string> id;
    std::optional<std::string> stage;
    std::optional<std::string> journey_id;
    std::optional<double> position;
    std::optional<std::string> creator_user_id;
    std::optional<std::string> title;
    std::optional<std::string> created;
    std::optional<std::string> updated;
};

/// A customer's progress through a process, shown as a web page of the service. What has another
/// type is null.
class SUPPORTSDK_API JourneyModel {
 public:
    explicit JourneyModel(const Json& dictionary);

    std::optional<std::string> title;
    std::optional<std::string> id;
    std::optional<std::string> partners_id;
    std::optional<std::string> creator_user_id;
    /// Its "description".
    std::optional<std::string> desc;
    std::optional<std::string> data;
    std::optional<double> status;
    std::optional<std::string> created;
    std::optional<std::string> updated;
    std::optional<std::string> customer_id;
    std::optional<std::string> customer_location_id;
    std::optional<std::string> issue_id;
    /// The page to show, unchecked.
    std::optional<std::string> journey_url;
    /// In the service's order.
    std::vector<std::shared_ptr<JourneyStageModel>> stages;
};

}  // namespace supportsdk
