#include "supportsdk/core/QDIssue.h"

#include <array>
#include <variant>

#include "supportsdk/core/Fields.h"
#include "supportsdk/core/ObjectDescription.h"

namespace supportsdk {

namespace {

using Text = std::optional<std::string> QDIssue::*;
using Number = std::optional<std::int64_t> QDIssue::*;

constexpr std::int64_t resolvedStatus = 7;

struct Field {
    std::variant<Text, Number> member;
    const char* readKey;
    /// Null for what is not stored.
    const char* writtenKey;
    bool survivesClear = false;

    Field(std::variant<Text, Number> where, const char* key)
        : member(where), readKey(key), writtenKey(key) {}
    Field(std::variant<Text, Number> where, const char* read, const char* written, bool survives)
        : member(where), readKey(read), writtenKey(written), survivesClear(survives) {}
};

const std::array<Field, 28>& fields() {
    static const std::array<Field, 28> table{{
        {&QDIssue::arrival_time, "arrival_time"},
        {&QDIssue::category, "category"},
        {&QDIssue::created, "created"},
        {&QDIssue::resolved, "resolved", "resolved", true},
        {&QDIssue::departure_time, "departure_time"},
        {&QDIssue::details, "details"},
        {&QDIssue::enroute_time, "enroute_time"},
        {&QDIssue::id, "id"},
        {&QDIssue::job, "job"},
        {&QDIssue::members_email, "members_email"},
        {&QDIssue::members_id, "members_id"},
        {&QDIssue::members_locations_id, "members_locations_id"},
        {&QDIssue::members_locations_name, "members_locations_name"},
        {&QDIssue::members_name, "members_name"},
        {&QDIssue::members_users_email, "members_users_email"},
        // The service's own misspelling; what is stored has the right name, and is not read back.
        {&QDIssue::members_users_id, "arrivamembers_users_idl_time", "members_users_id", false},
        {&QDIssue::members_users_name, "members_users_name"},
        {&QDIssue::reference_num, "reference_num"},
        {&QDIssue::remote_id, "remote_id"},
        {&QDIssue::resolution, "resolution"},
        {&QDIssue::scheduled_time, "scheduled_time"},
        {&QDIssue::owner_user_avatar, "owner_user_avatar", nullptr, true},
        {&QDIssue::status, "status"},
        {&QDIssue::rating, "rating", "rating", true},
        {&QDIssue::type, "type"},
        {&QDIssue::updated, "updated"},
        {&QDIssue::xmpp_data, "xmpp_data"},
        {&QDIssue::comm_id, "comm_id"},
    }};
    return table;
}

void readField(QDIssue& issue, Text member, const Json& dictionary, const char* key) {
    issue.*member = stringForKey(dictionary, key);
}

void readField(QDIssue& issue, Number member, const Json& dictionary, const char* key) {
    issue.*member = integerForKey(dictionary, key);
}

}  // namespace

QDIssue::QDIssue(const Json& dictionary) {
    for (const auto& field : fields()) {
        std::visit([&](auto member) { readField(*this, member, dictionary, field.readKey); },
                   field.member);
    }
    transcripts = dictionaryForKey(dictionary, "transcripts");
    isRated = boolForKey(dictionary, "isRated");
}

void QDIssue::clear() {
    for (const auto& field : fields()) {
        if (field.survivesClear) continue;
        std::visit([this](auto member) { (this->*member).reset(); }, field.member);
    }
    isRated = false;
}

Json QDIssue::dict() const {
    Json dictionary = {{"isRated", isRated}};
    for (const auto& field : fields()) {
        if (!field.writtenKey) continue;
        std::visit(
            [&](auto member) {
                if (const auto& value = this->*member) dictionary[field.writtenKey] = *value;
            },
            field.member);
    }
    return dictionary;
}

bool QDIssue::isOpen() const {
    return !status || *status < resolvedStatus;
}

bool QDIssue::isResolved() const {
    return status == resolvedStatus;
}

bool QDIssue::isClosed() const {
    return status && *status > resolvedStatus;
}

std::string QDIssue::displayStatus(const Localizer& localizer) const {
    if (isClosed()) return localizer.localized("Closed");
    return localizer.localized(isResolved() ? "Resolved" : "Open");
}

std::string QDIssue::debugDescription() const {
    return qd_classPropertiesAndValues("QDIssue", [this] {
        PropertyList properties{{"isRated", debugText(isRated)},
                                {"isTemporary", debugText(isTemporary)}};
        for (const auto& field : fields()) {
            std::visit(
                [&](auto member) {
                    properties.emplace_back(field.writtenKey ? field.writtenKey : field.readKey,
                                            debugText(this->*member));
                },
                field.member);
        }
        properties.emplace_back("transcripts", debugText(transcripts));
        return properties;
    });
}

std::shared_ptr<QDIssue> firstIssue(const Json& response) {
    const auto& results = arrayForKey(response, "results");
    return results.empty() ? nullptr : std::make_shared<QDIssue>(results.front());
}

}  // namespace supportsdk
