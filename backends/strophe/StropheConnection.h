#pragma once

#include <strophe.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "backends/strophe/Resolution.h"
#include "backends/strophe/SocketGuard.h"
#include "backends/strophe/StanzaConversion.h"
#include "backends/strophe/StreamEnd.h"
#include "supportsdk/platform/Stanza.h"

namespace supportsdk {

struct ConnectionOptions {
    std::string jid;
    std::string password;
    std::uint16_t port = 0;
    /// PEM file trusted beside the system's roots; none when empty.
    std::string authorities;
    bool requireTls = true;
};

/// One libstrophe context with one connection. Made, used and destroyed on one thread, one at a
/// time there; destroying it drops the connection.
class StropheConnection {
 public:
    struct Callbacks {
        std::function<void(const std::string& jid)> authenticated;
        std::function<void(std::shared_ptr<const Stanza> stanza)> received;
    };

    StropheConnection(const ConnectionOptions& options, SocketGuard& guard, Callbacks callbacks);
    ~StropheConnection();
    StropheConnection(const StropheConnection&) = delete;
    StropheConnection& operator=(const StropheConnection&) = delete;

    /// Begins to connect; hasEnded() tells when that failed at once.
    void connect(const PeerAddress& address);

    /// Writes and reads what is possible without waiting, except that a TLS handshake is waited
    /// for.
    void step();

    void send(std::string_view xml);
    /// Begins to close the stream in order.
    void close();

    [[nodiscard]] bool hasEnded() const { return ended_; }
    [[nodiscard]] bool hasQueuedSends() const;
    [[nodiscard]] const StreamFacts& facts() const { return facts_; }
    /// Whether anything was read off the socket since the last call. Ends the stream if the stanza
    /// that is being received has passed every reasonable size.
    [[nodiscard]] bool hasRead();
    /// Whether, at that call, more had come in than was read.
    [[nodiscard]] bool hasMore() const { return unread_ > 0; }

 private:
    static void logged(void* self, xmpp_log_level_t level, const char* area, const char* line);
    static void changed(xmpp_conn_t* connection, xmpp_conn_event_t event, int error,
                        xmpp_stream_error_t* streamError, void* self);
    static int stanzaReceived(xmpp_conn_t* connection, xmpp_stanza_t* stanza, void* self);
    static int socketMade(xmpp_conn_t* connection, void* socket);
    static int certificateRefused(const xmpp_tlscert_t* certificate, const char* problem);
    void noteStreamError(xmpp_stanza_t* stanza);

    SocketGuard& guard_;
    Callbacks callbacks_;
    std::uint16_t port_;
    std::unique_lock<std::mutex> proofLock_;
    StanzaConverter converter_;
    StreamFacts facts_;
    bool ended_ = false;
    std::uint64_t bytesRead_ = 0;
    std::uint64_t bytesAtLastStanza_ = 0;
    int unread_ = 0;
    bool stanzaSeen_ = true;
    xmpp_log_t log_;
    xmpp_ctx_t* context_;
    xmpp_conn_t* connection_;
};

}  // namespace supportsdk
