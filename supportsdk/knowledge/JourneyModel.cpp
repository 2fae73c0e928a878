#include "supportsdk/knowledge/JourneyModel.h"

#include "supportsdk/core/Fields.h"

namespace supportsdk {

JourneyStageModel::JourneyStageModel(const Json& dictionary)
    : id(stringForKey(dictionary, "id")),
      stage(stringForKey(dictionary, "stage")),
      journey_id(stringForKey(dictionary, "journey_id")),
      position(numberForKey(dictionary, "position")),
      creator_user_id(stringForKey(dictionary, "creator_user_id")),
      title(stringForKey(dictionary, "title")),
      created(stringForKey(dictionary, "created")),
      updated(stringForKey(dictionary, "updated")) {}

JourneyModel::JourneyModel(const Json& dictionary)
    : title(stringForKey(dictionary, "title")),
      id(stringForKey(dictionary, "id")),
      partners_id(stringForKey(dictionary, "partners_id")),
      creator_user_id(stringForKey(dictionary, "creator_user_id")),
      desc(stringForKey(dictionary, "description")),
      data(stringForKey(dictionary, "data")),
      status(numberForKey(dictionary, "status")),
      created(stringForKey(dictionary, "created")),
      updated(stringForKey(dictionary, "updated")),
      customer_id(stringForKey(dictionary, "customer_id")),
      customer_location_id(stringForKey(dictionary, "customer_location_id")),
      issue_id(stringForKey(dictionary, "issue_id")),
      journey_url(stringForKey(dictionary, "journey_url")) {
    for (const auto& entry : arrayForKey(dictionary, "stages")) {
        stages.push_back(std::make_shared<JourneyStageModel>(entry));
    }
}

}  // namespace supportsdk
