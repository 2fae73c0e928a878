#include "service/prosody/ProsodyControl.h"

#include <httplib.h>

namespace supportsdk::service {

namespace {

std::string text(const Json& object, const char* key) {
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

template <typename Number>
Number number(const Json& object, const char* key) {
    const auto found = object.find(key);
    return found != object.end() && found->is_number() ? found->get<Number>() : Number{};
}

const Json& list(const Json& object, const char* key) {
    static const Json none = Json::array();
    const auto found = object.find(key);
    return found != object.end() && found->is_array() ? *found : none;
}

RoomEvent::Kind kindOf(const std::string& name) {
    if (name == "joined") return RoomEvent::Kind::joined;
    return name == "left" ? RoomEvent::Kind::left : RoomEvent::Kind::message;
}

RoomEvent readEvent(const Json& json) {
    RoomEvent event;
    event.sequence = number<std::uint64_t>(json, "sequence");
    event.kind = kindOf(text(json, "kind"));
    event.room = text(json, "room");
    event.nick = text(json, "nick");
    event.account = text(json, "account");
    event.xml = text(json, "stanza");
    event.time = std::chrono::system_clock::time_point(
        std::chrono::duration_cast<std::chrono::system_clock::duration>(
            std::chrono::duration<double>(number<double>(json, "time"))));
    return event;
}

}  // namespace

ProsodyControl::ProsodyControl(std::uint16_t port, std::string host, std::string token)
    : port_(port), host_(std::move(host)), token_(std::move(token)) {}

std::optional<Json> ProsodyControl::call(const Json& request,
                                         std::chrono::milliseconds wait) const {
    // A connection for each call: a long wait for events then holds up nobody else.
    httplib::Client client("127.0.0.1", port_);
    client.set_connection_timeout(std::chrono::seconds{5});
    client.set_read_timeout(wait + std::chrono::seconds{10});
    const httplib::Headers headers{{"Host", host_}, {"Authorization", "Bearer " + token_}};
    const auto body = request.dump(-1, ' ', false, Json::error_handler_t::replace);
    const auto result = client.Post("/support-control", headers, body, "application/json");
    if (!result || result->status != 200) return std::nullopt;
    Json answer = Json::parse(result->body, nullptr, false);
    if (!answer.is_object() || answer.contains("error")) return std::nullopt;
    return answer;
}

bool ProsodyControl::registerAccount(const std::string& account, const std::string& password) {
    return call({{"operation", "registerAccount"}, {"account", account}, {"password", password}})
        .has_value();
}

bool ProsodyControl::createRoom(const std::string& room) {
    return call({{"operation", "createRoom"}, {"room", room}}).has_value();
}

bool ProsodyControl::destroyRoom(const std::string& room, const std::string& reason) {
    return call({{"operation", "destroyRoom"}, {"room", room}, {"reason", reason}}).has_value();
}

bool ProsodyControl::say(const std::string& room, const std::string& nick,
                         const std::vector<std::string>& stanzas) {
    return call({{"operation", "say"}, {"room", room}, {"nick", nick}, {"stanzas", stanzas}})
        .has_value();
}

std::optional<std::vector<Occupant>> ProsodyControl::occupants(const std::string& room) {
    const auto answer = call({{"operation", "occupants"}, {"room", room}});
    if (!answer) return std::nullopt;
    std::vector<Occupant> occupants;
    for (const auto& entry : list(*answer, "occupants"))
        occupants.push_back({text(entry, "nick"), text(entry, "account")});
    return occupants;
}

bool ProsodyControl::kick(const std::string& room, const std::string& nick,
                          const std::string& reason) {
    return call({{"operation", "kick"}, {"room", room}, {"nick", nick}, {"reason", reason}})
        .has_value();
}

bool ProsodyControl::occupy(const std::string& room, const std::vector<std::string>& nicks) {
    return call({{"operation", "occupy"}, {"room", room}, {"nicks", nicks}}).has_value();
}

bool ProsodyControl::replay(const std::string& room, const std::string& nick, int count) {
    return call({{"operation", "replay"}, {"room", room}, {"nick", nick}, {"count", count}})
        .has_value();
}

std::optional<int> ProsodyControl::cut(const std::string& jid) {
    const auto answer = call({{"operation", "cut"}, {"account", jid}});
    if (!answer) return std::nullopt;
    return number<int>(*answer, "count");
}

std::optional<RoomEvents> ProsodyControl::events(const RoomCursor& cursor,
                                                 std::chrono::milliseconds wait) {
    const auto seconds = std::chrono::duration<double>(wait).count();
    const auto answer = call({{"operation", "events"},
                              {"epoch", cursor.epoch},
                              {"after", cursor.after},
                              {"wait", seconds}},
                             wait);
    if (!answer) return std::nullopt;
    RoomEvents result;
    for (const auto& entry : list(*answer, "events")) result.events.push_back(readEvent(entry));
    result.next = {text(*answer, "epoch"), number<std::uint64_t>(*answer, "last")};
    return result;
}

}  // namespace supportsdk::service
