#pragma once

#include <atomic>
#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "service/prosody/ProsodyServer.h"
#include "service/state/Store.h"

namespace supportsdk::service {

class Journal;

struct ChatAccount {
    /// Bare JID.
    std::string jid;
    std::string password;
};

/// The chats: an XMPP server with a room and a record (kind::comm) for each, accounts for the
/// customers, and everything said written down as it passes through the rooms. Journal entries:
/// "line" (comm_id, issue_id, from, role, id, body, text), "typing" (comm_id, from, state),
/// "joined" and "left" (comm_id, from). Any thread.
class ChatRooms {
 public:
    ChatRooms(Store& store, Journal& journal, ProsodyOptions options);
    /// Ends the server.
    ~ChatRooms();
    ChatRooms(const ChatRooms&) = delete;
    ChatRooms& operator=(const ChatRooms&) = delete;

    /// Starts the server, with the rooms and accounts of former times. False when it stays down.
    [[nodiscard]] bool start();
    void stop(std::chrono::milliseconds limit);

    /// Makes a chat for a customer of an integration; nothing when the server is down. `issueId`
    /// may be "".
    [[nodiscard]] std::optional<Json> open(const std::string& integrationId,
                                           const std::string& issueId, const Json& customer);

    /// The account of a customer, made when missing; nothing when the server is down.
    [[nodiscard]] std::optional<ChatAccount> account(const std::string& memberUserId);

    /// Who may speak in a chat, by participant key: "name", "alias".
    [[nodiscard]] Json eligibleParticipants(const Json& comm) const;

    /// Sends a stanza into the room as if from an occupant; false when the server does not take it.
    [[nodiscard]] bool say(const Json& comm, const std::string& nick, const std::string& stanza);

    /// The lines of a chat by their time, as issues carry them; `base` goes before the avatars.
    [[nodiscard]] Json transcript(const std::string& commId, const std::string& base) const;

    [[nodiscard]] ProsodyControl control() const;
    [[nodiscard]] std::string domain() const { return server_.domain(); }
    [[nodiscard]] std::uint16_t port() const;
    /// -1 when it is down.
    [[nodiscard]] pid_t processId() const;
    /// Without a word to anybody.
    void killServer();

 private:
    [[nodiscard]] bool startServer();
    void restore();
    void follow();
    void note(const RoomEvent& event);
    void noteMessage(const RoomEvent& event, const Json& comm);

    Store& store_;
    Journal& journal_;
    std::mutex accountMutex_;
    mutable std::mutex serverMutex_;
    ProsodyServer server_;
    std::atomic<bool> ending_ = false;
    std::thread follower_;
};

}  // namespace supportsdk::service
