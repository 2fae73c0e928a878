#include "service/chat/ChatRooms.h"

#include <algorithm>
#include <cctype>

#include "service/chat/Envelope.h"
#include "service/chat/Stanzas.h"
#include "service/state/Identifiers.h"
#include "service/state/Journal.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

constexpr std::chrono::seconds pollTime{20};
constexpr std::chrono::milliseconds retryTime{50};
constexpr int firstComm = 7001;

std::string text(const Json& record, const char* key) {
    return stringForKey(record, key).value_or("");
}

/// Identifiers are free text, the local part of a JID is not (RFC 7622).
std::string localPart(std::string identifier) {
    for (char& letter : identifier) {
        const auto byte = static_cast<unsigned char>(letter);
        letter = std::isalnum(byte) ? static_cast<char>(std::tolower(byte)) : '-';
    }
    return identifier;
}

std::string customerKey(const Json& comm) {
    return "members_users:" + text(comm, "members_users_id");
}

}  // namespace

ChatRooms::ChatRooms(Store& store, Journal& journal, ProsodyOptions options)
    : store_(store), journal_(journal), server_(std::move(options)) {}

ChatRooms::~ChatRooms() {
    stop(std::chrono::milliseconds{0});
}

bool ChatRooms::start() {
    if (!startServer()) return false;
    if (!follower_.joinable()) follower_ = std::thread([this] { follow(); });
    return true;
}

bool ChatRooms::startServer() {
    const std::lock_guard lock(serverMutex_);
    if (!server_.start()) return false;
    restore();
    return true;
}

/// The server forgets its rooms whenever it ends.
void ChatRooms::restore() {
    auto control = server_.control();
    for (const auto& comm : store_.list(kind::comm)) {
        if (!boolForKey(comm, "closed")) (void)control.createRoom(text(comm, "external_id"));
    }
    for (const auto& account : store_.list(kind::account))
        (void)control.registerAccount(text(account, "jid"), text(account, "password"));
}

void ChatRooms::stop(std::chrono::milliseconds limit) {
    ending_ = true;
    {
        const std::lock_guard lock(serverMutex_);
        server_.stop(limit);
    }
    if (follower_.joinable()) follower_.join();
}

void ChatRooms::killServer() {
    const std::lock_guard lock(serverMutex_);
    server_.kill();
}

ProsodyControl ChatRooms::control() const {
    const std::lock_guard lock(serverMutex_);
    return server_.control();
}

std::uint16_t ChatRooms::port() const {
    const std::lock_guard lock(serverMutex_);
    return server_.c2sPort();
}

pid_t ChatRooms::processId() const {
    const std::lock_guard lock(serverMutex_);
    return server_.processId();
}

std::optional<Json> ChatRooms::open(const std::string& integrationId, const std::string& issueId,
                                    const Json& customer) {
    const auto id = std::to_string(store_.next("comm", firstComm));
    const auto room = server_.room("chat-" + id);
    if (!control().createRoom(room)) return std::nullopt;
    Json comm{{"comm_id", id},
              {"integration", integrationId},
              {"issue_id", issueId},
              {"external_id", room},
              {"title", "Support for " + text(customer, "members_users_name")},
              {"members_users_id", text(customer, "members_users_id")},
              {"created", dateTimeText(std::chrono::system_clock::now())},
              {"access_token", randomHex(16)}};
    store_.put(kind::comm, id, comm);
    return comm;
}

std::optional<ChatAccount> ChatRooms::account(const std::string& memberUserId) {
    // Two chats that begin at once must not make the account with two passwords.
    const std::lock_guard lock(accountMutex_);
    auto record = store_.get(kind::account, memberUserId);
    if (!record) {
        record = Json{{"jid", server_.jid("member-" + localPart(memberUserId))},
                      {"password", randomHex(16)}};
    }
    ChatAccount account{text(*record, "jid"), text(*record, "password")};
    if (!control().registerAccount(account.jid, account.password)) return std::nullopt;
    store_.put(kind::account, memberUserId, *record);
    return account;
}

Json ChatRooms::eligibleParticipants(const Json& comm) const {
    const auto customer = store_.get(kind::customer, text(comm, "members_users_id"));
    Json participants = Json::object();
    if (customer) {
        participants[customerKey(comm)] = {{"name", text(*customer, "members_users_name")},
                                           {"alias", text(*customer, "members_users_alias")}};
    }
    for (const auto& technician : store_.list(kind::technician)) {
        participants[text(technician, "key")] = {{"name", text(technician, "name")},
                                                 {"alias", text(technician, "alias")}};
    }
    return participants;
}

bool ChatRooms::say(const Json& comm, const std::string& nick, const std::string& stanza) {
    return control().say(text(comm, "external_id"), nick, {stanza});
}

Json ChatRooms::transcript(const std::string& commId, const std::string& base) const {
    Json transcript = Json::object();
    for (auto line : store_.list(kind::lineOf(commId))) {
        line["from_avatar"] = base + avatarPath(text(line, "from_key"));
        auto sent = text(line, "sent");
        // Keys are times; of two lines in one millisecond the later one moves on.
        while (transcript.contains(sent)) {
            if (sent.back() < '9') {
                ++sent.back();
            } else {
                sent += '0';
            }
        }
        transcript[sent] = std::move(line);
    }
    return transcript;
}

/// Runs on the follower's thread for as long as there are chats.
void ChatRooms::follow() {
    RoomCursor cursor;
    while (!ending_) {
        const auto events = control().events(cursor, pollTime);
        if (!events) {
            std::this_thread::sleep_for(retryTime);
            continue;
        }
        for (const auto& event : events->events) note(event);
        cursor = events->next;
    }
}

void ChatRooms::note(const RoomEvent& event) {
    const auto local = event.room.substr(0, event.room.find('@'));
    const auto comm = store_.get(kind::comm, local.substr(local.find('-') + 1));
    if (!comm || text(*comm, "external_id") != event.room) return;
    if (event.kind == RoomEvent::Kind::message) {
        noteMessage(event, *comm);
        return;
    }
    journal_.append(event.kind == RoomEvent::Kind::joined ? "joined" : "left",
                    {{"comm_id", text(*comm, "comm_id")}, {"from", event.nick}});
}

void ChatRooms::noteMessage(const RoomEvent& event, const Json& comm) {
    const auto message = readRoomMessage(event.xml);
    if (!message) return;
    const auto commId = text(comm, "comm_id");
    const auto key = event.nick.substr(0, event.nick.find(';'));
    if (!message->body) {
        if (!message->chatState.empty()) {
            journal_.append("typing",
                            {{"comm_id", commId}, {"from", key}, {"state", message->chatState}});
        }
        return;
    }
    const auto readable = readableText(*message->body);
    const auto name = stringForKey(dictionaryForKey(eligibleParticipants(comm), key), "name");
    if (readable) {
        store_.put(kind::lineOf(commId), std::to_string(store_.next("line", 1)),
                   {{"sent", preciseDateTimeText(event.time)},
                    {"from", name.value_or(key)},
                    {"from_key", key},
                    {"message", *readable}});
    }
    journal_.append("line", {{"comm_id", commId},
                             {"issue_id", text(comm, "issue_id")},
                             {"from", key},
                             {"name", name.value_or("")},
                             {"role", key == customerKey(comm) ? "customer" : "technician"},
                             {"id", message->id},
                             {"text", readable.value_or("")},
                             {"body", *message->body}});
}

}  // namespace supportsdk::service
