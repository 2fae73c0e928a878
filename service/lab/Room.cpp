#include <algorithm>

#include "service/chat/Envelope.h"
#include "service/chat/Stanzas.h"
#include "service/lab/Lab.h"
#include "service/lab/Target.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

constexpr std::int64_t maximumReplay = 1'000'000;

const Answer unknownChat = failure(404, "This chat is unknown.");

std::string text(const Json& record, const char* key) {
    return stringForKey(record, key).value_or("");
}

Answer done(bool worked) {
    return worked ? ok(Json::object()) : failure(409, "The chat server refused it.");
}

/// The technician that "from" names; without it the first one that there is. A key that is nobody's
/// may speak too.
Speaker speaker(const Desk& desk, const Call& call) {
    const auto technicians = desk.store.list(kind::technician);
    const auto first = technicians.empty() ? "" : text(technicians.front(), "key");
    const auto key = stringForKey(call.body, "from").value_or(first);
    const auto technician = desk.store.get(kind::technician, key).value_or(Json::object());
    return {key, text(technician, "name"), call.base + avatarPath(key)};
}

std::optional<std::string> bodyOf(const Json& request, const Speaker& by) {
    const auto kindWord = stringForKey(request, "kind").value_or("text");
    if (kindWord == "text") return text(request, "message");
    if (kindWord == "raw") return text(request, "body");
    const auto envelope = makeEnvelope(kindWord, request, by);
    return kindWordOf(envelope) ? std::optional(dumpJson(envelope)) : std::nullopt;
}

Answer say(Desk& desk, const Call& call) {
    const auto comm = targetChat(desk, call.body);
    if (!comm) return unknownChat;
    const auto by = speaker(desk, call);
    const auto body = bodyOf(call.body, by);
    if (!body) return failure(400, "There is no such \"kind\".");
    const auto stanza = writeRoomMessage({text(call.body, "id"), body, text(call.body, "state")});
    if (!desk.rooms.say(*comm, by.key, stanza)) return done(false);
    if (desk.store.get(kind::technician, by.key)) desk.issues.take(text(*comm, "issue_id"), by.key);
    return ok({{"body", *body}});
}

Answer setTyping(Desk& desk, const Call& call) {
    const auto comm = targetChat(desk, call.body);
    if (!comm) return unknownChat;
    const auto state = stringForKey(call.body, "state").value_or("composing");
    const auto stanza = writeRoomMessage({text(call.body, "id"), std::nullopt, state});
    return done(desk.rooms.say(*comm, speaker(desk, call).key, stanza));
}

Answer setPresence(Desk& desk, const Call& call) {
    const auto comm = targetChat(desk, call.body);
    if (!comm) return unknownChat;
    const auto* present = valueForKey(call.body, "present");
    const auto stanza = writePresence(!present || boolForKey(call.body, "present"));
    return done(desk.rooms.say(*comm, speaker(desk, call).key, stanza));
}

Answer resolve(Desk& desk, const Call& call) {
    const auto resolution = stringForKey(call.body, "resolution").value_or("Resolved");
    const auto issue =
        desk.issues.close(text(call.body, "issue"), issueStatus::resolved, resolution);
    return issue ? results(Json::array({*issue})) : failure(404, "This issue is unknown.");
}

/// Any status, also backwards and out of a closed one.
Answer setStatus(Desk& desk, const Call& call) {
    const auto status = integerForKey(call.body, "status");
    if (!status) return failure(400, "\"status\" is missing.");
    const auto issue = desk.store.update(kind::issue, text(call.body, "issue"),
                                         [&](Json& record) { record["status"] = *status; });
    return issue ? results(Json::array({*issue})) : failure(404, "This issue is unknown.");
}

Answer participants(Desk& desk, const Call& call) {
    const auto comm = targetChat(desk, call.query);
    if (!comm) return unknownChat;
    const auto occupants = desk.rooms.control().occupants(text(*comm, "external_id"));
    if (!occupants) return done(false);
    Json list = Json::array();
    for (const auto& occupant : *occupants)
        list.push_back({{"from", occupant.nick}, {"account", occupant.account}});
    return results(std::move(list));
}

std::string customerNick(const Json& comm) {
    return "members_users:" + text(comm, "members_users_id");
}

/// Fills the room with occupants behind whom there is nobody.
Answer occupy(Desk& desk, const Call& call) {
    const auto comm = targetChat(desk, call.body);
    if (!comm) return unknownChat;
    std::vector<std::string> nicks;
    for (const auto& nick : arrayForKey(call.body, "participants"))
        nicks.push_back(nick.is_string() ? nick.get<std::string>() : "");
    if (nicks.empty()) nicks.push_back(customerNick(*comm));
    return done(desk.rooms.control().occupy(text(*comm, "external_id"), nicks));
}

Answer replay(Desk& desk, const Call& call) {
    const auto comm = targetChat(desk, call.body);
    if (!comm) return unknownChat;
    const auto lines = integerForKey(call.body, "lines").value_or(0);
    const auto count = static_cast<int>(std::clamp<std::int64_t>(lines, 0, maximumReplay));
    return done(
        desk.rooms.control().replay(text(*comm, "external_id"), speaker(desk, call).key, count));
}

Answer kick(Desk& desk, const Call& call) {
    const auto comm = targetChat(desk, call.body);
    if (!comm) return unknownChat;
    const auto nick = stringForKey(call.body, "participant").value_or(customerNick(*comm));
    return done(
        desk.rooms.control().kick(text(*comm, "external_id"), nick, text(call.body, "reason")));
}

/// Closes the connections of the customer of a chat, as a network that fails.
Answer cut(Desk& desk, const Call& call) {
    const auto comm = targetChat(desk, call.body);
    if (!comm) return unknownChat;
    const auto account = desk.store.get(kind::account, text(*comm, "members_users_id"));
    const auto count = desk.rooms.control().cut(text(account.value_or(Json::object()), "jid"));
    return count ? ok({{"count", *count}}) : done(false);
}

Answer destroy(Desk& desk, const Call& call) {
    const auto comm = targetChat(desk, call.body);
    if (!comm) return unknownChat;
    desk.store.update(kind::comm, text(*comm, "comm_id"),
                      [](Json& record) { record["closed"] = true; });
    return done(
        desk.rooms.control().destroyRoom(text(*comm, "external_id"), text(call.body, "reason")));
}

}  // namespace

void addLabRoomRoutes(Router& router, Desk& desk) {
    const auto post = [&](const char* path, Answer (*handler)(Desk&, const Call&)) {
        router.add("POST", path, Body::json,
                   [&desk, handler](Call& call) { return handler(desk, call); });
    };
    post("/lab/say", say);
    post("/lab/typing", setTyping);
    post("/lab/presence", setPresence);
    post("/lab/resolve", resolve);
    post("/lab/status", setStatus);
    post("/lab/kick", kick);
    post("/lab/occupy", occupy);
    post("/lab/replay", replay);
    post("/lab/cut", cut);
    post("/lab/destroy", destroy);
    router.add("GET", "/lab/participants", Body::none,
               [&desk](Call& call) { return participants(desk, call); });
}

}  // namespace supportsdk::service
