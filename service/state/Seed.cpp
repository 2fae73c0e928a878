#include "service/state/Seed.h"

#include <array>

#include "service/state/CredentialBlock.h"
#include "service/state/DefaultSeed.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

struct Section {
    const char* name;
    const char* kind;
    const char* idKey;
};

constexpr std::array sections{
    Section{"integrations", kind::integration, "integrationId"},
    Section{"technicians", kind::technician, "key"},
    Section{"customers", kind::customer, "members_users_id"},
    Section{"articles", kind::article, "id"},
    Section{"forms", kind::form, "checklist_id"},
    Section{"journeys", kind::journey, "id"},
    Section{"issues", kind::issue, "id"},
};

std::string text(const Json& record, const char* key) {
    return stringForKey(record, key).value_or("");
}

/// Those of a chat that is over let nobody in, but a host finds its transcript by them.
std::optional<std::string> pastCredentials(const Json& issue, const Store& store) {
    const auto integration = store.get(kind::integration, text(issue, "integration"));
    if (!integration) return std::nullopt;
    const auto resource = "members_users:" + text(issue, "members_users_id");
    return encryptCredentials({text(issue, "comm_id"), "", "", "", 0, resource},
                              text(*integration, "apiKey"));
}

/// A past issue leaves the lines out of its record, where those of later issues are not either.
void plantIssue(Json issue, Store& store) {
    const auto commId = text(issue, "comm_id");
    int number = 0;
    for (const auto& line : arrayForKey(issue, "transcript"))
        store.put(kind::lineOf(commId), std::to_string(++number), line);
    issue.erase("transcript");
    if (const auto customer = store.get(kind::customer, text(issue, "members_users_id"))) {
        auto whole = *customer;
        whole.update(issue);
        issue = std::move(whole);
    }
    if (const auto credentials = pastCredentials(issue, store)) issue["xmpp_data"] = *credentials;
    store.put(kind::issue, text(issue, "id"), issue);
    store.put(kind::comm, commId,
              {{"comm_id", commId},
               {"integration", text(issue, "integration")},
               {"issue_id", text(issue, "id")},
               {"members_users_id", text(issue, "members_users_id")},
               {"created", text(issue, "created")},
               {"external_id", ""},
               {"closed", true}});
}

}  // namespace

std::string_view defaultSeed() {
    return defaultSeedText;
}

std::optional<Json> readSeed(std::string_view json, std::string& problem) {
    auto seed = parseJson(json);
    if (!seed) {
        problem = "it is not JSON";
        return std::nullopt;
    }
    for (const auto& section : sections) {
        for (const auto& record : arrayForKey(*seed, section.name)) {
            if (text(record, section.idKey).empty()) {
                problem = std::string(section.name) + ": a record has no " + section.idKey;
                return std::nullopt;
            }
        }
    }
    if (arrayForKey(*seed, "integrations").empty()) {
        problem = "there are no integrations";
        return std::nullopt;
    }
    return seed;
}

void plantSeed(const Json& seed, Store& store) {
    store.inOneTransaction([&] {
        for (const auto& section : sections) {
            for (const auto& record : arrayForKey(seed, section.name)) {
                if (section.kind == kind::issue) {
                    plantIssue(record, store);
                } else {
                    store.put(section.kind, text(record, section.idKey), record);
                }
            }
        }
    });
}

}  // namespace supportsdk::service
