#include "service/rest/Desk.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

std::optional<Answer> objectionToMember(const Desk& desk, const Call& call) {
    const auto id = stringForKey(call.body, "members_users_id");
    if (!id) return failure(400, "members_users_id is missing.");
    if (!findOwn(desk, kind::customer, *id, call)) return failure(404, "This user is unknown.");
    return std::nullopt;
}

using ChatHandler = Answer (*)(Desk&, const Call&, const Json& comm);

/// The checks that all calls on one chat share.
Handler onChat(Desk& desk, ChatHandler handler) {
    return [&desk, handler](Call& call) {
        if (auto objection = objectionToMember(desk, call)) return *objection;
        const auto comm = findOwn(desk, kind::comm, call.id, call);
        return comm ? handler(desk, call, *comm) : failure(404, "This chat is unknown.");
    };
}

Json present(Desk& desk, const Json& comm) {
    Json keys = Json::array();
    const auto room = stringForKey(comm, "external_id").value_or("");
    const auto occupants = desk.rooms.control().occupants(room);
    if (occupants) {
        for (const auto& occupant : *occupants) keys.push_back(occupant.nick);
    }
    return keys;
}

Json record(Desk& desk, const Json& comm) {
    return {{"comm_id", stringForKey(comm, "comm_id").value_or("")},
            {"created", stringForKey(comm, "created").value_or("")},
            {"external_id", stringForKey(comm, "external_id").value_or("")},
            {"access_token", stringForKey(comm, "access_token").value_or("")},
            {"comm", {{"title", stringForKey(comm, "title").value_or("")}}},
            {"participants", present(desk, comm)},
            {"participants_eligible", desk.rooms.eligibleParticipants(comm)}};
}

Answer get(Desk& desk, const Call&, const Json& comm) {
    return ok(record(desk, comm));
}

Answer put(Desk& desk, const Call& call) {
    if (auto objection = objectionToMember(desk, call)) return *objection;
    const auto userId = stringForKey(call.body, "members_users_id").value_or("");
    const auto customer = desk.store.get(kind::customer, userId);
    const auto comm = desk.rooms.open(call.integrationId, "", customer.value_or(Json::object()));
    return comm ? ok(record(desk, *comm)) : failure(503, "The chat server is down.");
}

Answer note(Desk& desk, const Json& comm, const char* what, const Json& durations) {
    const auto commId = stringForKey(comm, "comm_id").value_or("");
    desk.store.update(kind::comm, commId, [&](Json& stored) {
        stored["entered"] = std::string(what) == "entered";
        stored.update(durations);
    });
    desk.journal.append(what, {{"comm_id", commId}, {"durations", durations}});
    return results(Json::array({{{"comm_id", commId}}}));
}

Answer enter(Desk& desk, const Call&, const Json& comm) {
    desk.issues.advance(stringForKey(comm, "issue_id").value_or(""), issueStatus::customerWaits);
    return note(desk, comm, "entered", Json::object());
}

Answer leave(Desk& desk, const Call& call, const Json& comm) {
    const auto start = integerForKey(call.body, "duration_start");
    const auto add = integerForKey(call.body, "duration_add");
    if (!start || !add) return failure(400, "A duration is missing.");
    return note(desk, comm, "exited", {{"duration_start", *start}, {"duration_add", *add}});
}

}  // namespace

void addChatRoutes(Router& router, Desk& desk) {
    router.add("POST", "/sdk/v1/chat/get/*", Body::json, onChat(desk, get));
    router.add("POST", "/sdk/v1/chat/put", Body::json,
               [&desk](Call& call) { return put(desk, call); });
    router.add("POST", "/sdk/v1/chat/enter/*", Body::json, onChat(desk, enter));
    router.add("POST", "/sdk/v1/chat/exit/*", Body::json, onChat(desk, leave));
}

}  // namespace supportsdk::service
