#include "supportsdk/core/QDLocation.h"

#include "supportsdk/core/RecordFields.h"

namespace supportsdk {

namespace {

constexpr TextFields<QDLocation, 10> texts{{
    {"id", &QDLocation::id},
    {"site_name", &QDLocation::site_name},
    {"street_1", &QDLocation::street_1},
    {"street_2", &QDLocation::street_2},
    {"city", &QDLocation::city},
    {"state", &QDLocation::state},
    {"zipcode", &QDLocation::zipcode},
    {"phone", &QDLocation::phone},
    {"latitude", &QDLocation::latitude},
    {"longitude", &QDLocation::longitude},
}};

constexpr TextFields<QDLocation, 5> relations{{
    {"entity_name", &QDLocation::entity_name},
    {"related_id", &QDLocation::related_id},
    {"related_to", &QDLocation::related_to},
    {"related_name", &QDLocation::related_name},
    {"status", &QDLocation::status},
}};

}  // namespace

void QDLocation::clear() {
    clearTexts(*this, texts);
    state_id.reset();
}

void QDLocation::copyFrom(const QDLocation& other) {
    for (const auto& field : texts) this->*field.member = other.*field.member;
    state_id = other.state_id;
}

Json QDLocation::dict() const {
    Json dictionary = Json::object();
    writeTexts(*this, dictionary, texts);
    if (state_id) dictionary["state_id"] = *state_id;
    return dictionary;
}

std::string QDLocation::debugDescription() const {
    return qd_classPropertiesAndValues("QDLocation", [this] {
        PropertyList properties;
        describeTexts(*this, properties, texts);
        properties.insert(properties.begin() + 6, {"state_id", debugText(state_id)});
        describeTexts(*this, properties, relations);
        return properties;
    });
}

}  // namespace supportsdk
