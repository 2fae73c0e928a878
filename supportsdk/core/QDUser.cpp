#include "supportsdk/core/QDUser.h"

#include "supportsdk/core/RecordFields.h"

namespace supportsdk {

namespace {

constexpr TextFields<QDUser, 18> texts{{
    {"id", &QDUser::id},
    {"first_name", &QDUser::first_name},
    {"last_name", &QDUser::last_name},
    {"members_id", &QDUser::members_id},
    {"members_locations_id", &QDUser::members_locations_id},
    {"nickname", &QDUser::nickname},
    {"avatar", &QDUser::avatar},
    {"email", &QDUser::email},
    {"password", &QDUser::password},
    {"sms_number", &QDUser::sms_number},
    {"lang", &QDUser::lang},
    {"entity_id", &QDUser::entity_id},
    {"entity_of", &QDUser::entity_of},
    {"entity_name", &QDUser::entity_name},
    {"related_id", &QDUser::related_id},
    {"related_to", &QDUser::related_to},
    {"related_name", &QDUser::related_name},
    {"status", &QDUser::status},
}};

constexpr TextFields<QDUser, 9> written{{
    {"id", &QDUser::id},
    {"first_name", &QDUser::first_name},
    {"last_name", &QDUser::last_name},
    {"members_id", &QDUser::members_id},
    {"members_locations_id", &QDUser::members_locations_id},
    {"nickname", &QDUser::nickname},
    {"email", &QDUser::email},
    {"avatar", &QDUser::avatar},
    {"password", &QDUser::password},
}};

constexpr TextFields<QDUser, 7> relations{{
    {"entity_id", &QDUser::entity_id},
    {"entity_of", &QDUser::entity_of},
    {"entity_name", &QDUser::entity_name},
    {"related_id", &QDUser::related_id},
    {"related_to", &QDUser::related_to},
    {"related_name", &QDUser::related_name},
    {"status", &QDUser::status},
}};

}  // namespace

void QDUser::clear() {
    auto kept = std::move(password);
    clearTexts(*this, texts);
    password = std::move(kept);
    invite = false;
}

Json QDUser::dict() const {
    Json dictionary = Json::object();
    writeTexts(*this, dictionary, written);
    return dictionary;
}

std::string QDUser::debugDescription() const {
    return qd_classPropertiesAndValues("QDUser", [this] {
        PropertyList properties{{"invite", debugText(invite)},
                                {"isAdminUser", debugText(isAdminUser_)}};
        describeTexts(*this, properties, texts);
        properties.emplace_back("name", debugText(name()));
        return properties;
    });
}

void QDUser::populateQuorrandUser(QDUser& user, const Json& dictionary) {
    for (const auto& field : relations) {
        auto text = stringForKey(dictionary, field.key);
        if (text && !text->empty()) user.*field.member = std::move(text);
    }
}

}  // namespace supportsdk
