#include "supportsdk/core/QDMember.h"

#include "supportsdk/core/RecordFields.h"

namespace supportsdk {

namespace {

constexpr double defaultIssueRefresh = 15;

constexpr TextFields<QDMember, 33> clearedTexts{{
    {"member_name", &QDMember::member_name},
    {"members_id", &QDMember::members_id},
    {"members_users_id", &QDMember::members_users_id},
    {"first_name", &QDMember::first_name},
    {"last_name", &QDMember::last_name},
    {"email", &QDMember::email},
    {"sk_id", &QDMember::sk_id},
    {"sk_pwd", &QDMember::sk_pwd},
    {"oovoo_conference_id", &QDMember::oovoo_conference_id},
    {"xmpp_comm_id", &QDMember::xmpp_comm_id},
    {"xmpp_jid", &QDMember::xmpp_jid},
    {"xmpp_password", &QDMember::xmpp_password},
    {"xmpp_chimebot_jid", &QDMember::xmpp_chimebot_jid},
    {"xmpp_host", &QDMember::xmpp_host},
    {"xmpp_port", &QDMember::xmpp_port},
    {"xmpp_resource", &QDMember::xmpp_resource},
    {"preferred_lang", &QDMember::preferred_lang},
    {"name_legal", &QDMember::name_legal},
    {"street_1", &QDMember::street_1},
    {"street_2", &QDMember::street_2},
    {"city", &QDMember::city},
    {"state", &QDMember::state},
    {"zipcode", &QDMember::zipcode},
    {"mobile", &QDMember::mobile},
    {"avatar", &QDMember::avatar},
    {"nickname", &QDMember::nickname},
    {"lang", &QDMember::lang},
    {"sms_number", &QDMember::sms_number},
    {"sponsor", &QDMember::sponsor},
    {"brand_color1", &QDMember::brand_color1},
    {"brand_logo_1x", &QDMember::brand_logo_1x},
    {"brand_logo_2x", &QDMember::brand_logo_2x},
    {"brand_logo_3x", &QDMember::brand_logo_3x},
}};

constexpr TextFields<QDMember, 4> keptTexts{{
    {"image", &QDMember::image},
    {"user_nickname", &QDMember::user_nickname},
    {"user_avatar", &QDMember::user_avatar},
    {"user_image", &QDMember::user_image},
}};

constexpr TextFields<QDMember, 13> accountTexts{{
    {"name", &QDMember::member_name},
    {"members_id", &QDMember::members_id},
    {"preferred_lang", &QDMember::preferred_lang},
    {"name_legal", &QDMember::name_legal},
    {"street_1", &QDMember::street_1},
    {"street_2", &QDMember::street_2},
    {"city", &QDMember::city},
    {"state", &QDMember::state},
    {"zipcode", &QDMember::zipcode},
    {"mobile", &QDMember::mobile},
    {"avatar", &QDMember::avatar},
    {"nickname", &QDMember::nickname},
    {"sponsor", &QDMember::sponsor},
}};

constexpr TextFields<QDMember, 8> writtenAccountTexts{{
    {"name", &QDMember::member_name},
    {"preferred_lang", &QDMember::preferred_lang},
    {"name_legal", &QDMember::name_legal},
    {"street_1", &QDMember::street_1},
    {"street_2", &QDMember::street_2},
    {"city", &QDMember::city},
    {"state", &QDMember::state},
    {"zipcode", &QDMember::zipcode},
}};

constexpr TextFields<QDMember, 4> brandTexts{{
    {"brand_color1", &QDMember::brand_color1},
    {"brand_logo_1x", &QDMember::brand_logo_1x},
    {"brand_logo_2x", &QDMember::brand_logo_2x},
    {"brand_logo_3x", &QDMember::brand_logo_3x},
}};

constexpr TextFields<QDMember, 8> userTexts{{
    {"first_name", &QDMember::first_name},
    {"last_name", &QDMember::last_name},
    {"members_users_id", &QDMember::members_users_id},
    {"email", &QDMember::email},
    {"lang", &QDMember::lang},
    {"sms_number", &QDMember::sms_number},
    {"avatar", &QDMember::user_avatar},
    {"nickname", &QDMember::user_nickname},
}};

constexpr TextFields<QDMember, 3> writtenUserTexts{{
    {"first_name", &QDMember::first_name},
    {"last_name", &QDMember::last_name},
    {"email", &QDMember::email},
}};

constexpr TextFields<QDMember, 2> applicationTexts{{
    {"sk_id", &QDMember::sk_id},
    {"sk_pwd", &QDMember::sk_pwd},
}};

constexpr TextFields<QDMember, 7> xmppTexts{{
    {"comm_id", &QDMember::xmpp_comm_id},
    {"jid", &QDMember::xmpp_jid},
    {"password", &QDMember::xmpp_password},
    {"host", &QDMember::xmpp_host},
    {"resource", &QDMember::xmpp_resource},
    {"chimebot_jid", &QDMember::xmpp_chimebot_jid},
    {"port", &QDMember::xmpp_port},
}};

constexpr TextFields<QDUser, 8> memberUserTexts{{
    {"id", &QDUser::id},
    {"first_name", &QDUser::first_name},
    {"last_name", &QDUser::last_name},
    {"nickname", &QDUser::nickname},
    {"email", &QDUser::email},
    {"avatar", &QDUser::avatar},
    {"lang", &QDUser::lang},
    {"sms_number", &QDUser::sms_number},
}};

constexpr TextFields<QDLocation, 8> memberLocationTexts{{
    {"id", &QDLocation::id},
    {"site_name", &QDLocation::site_name},
    {"street_1", &QDLocation::street_1},
    {"street_2", &QDLocation::street_2},
    {"city", &QDLocation::city},
    {"state", &QDLocation::state},
    {"zipcode", &QDLocation::zipcode},
    {"phone", &QDLocation::phone},
}};

template <typename Record>
std::string describeAll(const std::vector<Record>& records) {
    std::string text;
    for (const auto& record : records) text += record.debugDescription();
    return "(" + text + ")";
}

}  // namespace

void QDMember::clear() {
    clearTexts(*this, clearedTexts);
    status.reset();
    latitude.reset();
    longitude.reset();
    issue_refresh = defaultIssueRefresh;
    private_label = false;
    member_users.clear();
    member_locations.clear();
}

Json QDMember::getMembersDict() const {
    Json dictionary = Json::object();
    writeTexts(*this, dictionary, writtenAccountTexts);
    if (status) dictionary["status"] = *status;
    return dictionary;
}

Json QDMember::getMembersUsersDict() const {
    Json dictionary = Json::object();
    writeTexts(*this, dictionary, writtenUserTexts);
    return dictionary;
}

void QDMember::populateMemberWithDict(const Json& dictionary) {
    readAccount(dictionaryForKey(dictionary, "member"));

    const auto& contact = dictionaryForKey(dictionary, "first_contact");
    if (numberForKey(contact, "private_label")) {
        private_label = boolForKey(contact, "private_label");
    }
    readTexts(*this, contact, brandTexts);
    readUser(dictionaryForKey(dictionary, "user"));

    const auto& application = dictionaryForKey(dictionary, "app_config");
    readTexts(*this, application, applicationTexts);
    const auto refresh = numberForKey(application, "issue_refresh");
    if (refresh && *refresh > 0) issue_refresh = refresh;

    readTexts(*this, dictionaryForKey(dictionary, "xmpp"), xmppTexts);
    populateMembersUsersWithDict(dictionary);
    populateMembersLocationsWithDict(dictionary);
}

void QDMember::readAccount(const Json& member) {
    readTexts(*this, member, accountTexts);
    if (const auto number = integerForKey(member, "status")) status = number;
    const auto* object = valueForKey(member, "partners");
    if (object && object->is_object()) partners = *object;
    const auto* teams = valueForKey(member, "partners_teams_ids");
    if (!teams || !teams->is_array()) return;
    partners = Json::object();
    for (const auto& team : *teams) {
        (*partners)[team.is_string() ? team.get<std::string>() : dumpJson(team)] = Json::object();
    }
}

void QDMember::readUser(const Json& user) {
    readTexts(*this, user, userTexts);
    const auto& location = dictionaryForKey(user, "location");
    if (const auto number = numberForKey(location, "latitude")) latitude = number;
    if (const auto number = numberForKey(location, "longitude")) longitude = number;
}

void QDMember::populateMembersUsersWithDict(const Json& dictionary) {
    const auto* users = valueForKey(dictionary, "member_users");
    if (!users || !users->is_array()) return;
    member_users.clear();
    for (const auto& user : *users) readTexts(member_users.emplace_back(), user, memberUserTexts);
}

void QDMember::populateMembersLocationsWithDict(const Json& dictionary) {
    const auto* locations = valueForKey(dictionary, "member_locations");
    if (!locations || !locations->is_array()) return;
    member_locations.clear();
    for (const auto& entry : *locations) {
        auto& location = member_locations.emplace_back();
        readTexts(location, entry, memberLocationTexts);
        location.state_id = integerForKey(entry, "state_id");
    }
}

std::optional<std::string> QDMember::stringFromDictionary(const Json& dictionary,
                                                          std::string_view key) {
    return stringForKey(dictionary, key);
}

std::optional<double> QDMember::numberFromDictionary(const Json& dictionary, std::string_view key) {
    return numberForKey(dictionary, key);
}

std::string QDMember::debugDescription() const {
    return qd_classPropertiesAndValues("QDMember", [this] {
        PropertyList properties{{"private_label", debugText(private_label)},
                                {"partners", debugText(partners)},
                                {"status", debugText(status)},
                                {"issue_refresh", debugText(issue_refresh)},
                                {"latitude", debugText(latitude)},
                                {"longitude", debugText(longitude)}};
        describeTexts(*this, properties, clearedTexts);
        describeTexts(*this, properties, keptTexts);
        properties.emplace_back("member_users", describeAll(member_users));
        properties.emplace_back("member_locations", describeAll(member_locations));
        return properties;
    });
}

}  // namespace supportsdk
