#include "backends/strophe/StropheConnection.h"

#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <cstring>
#include <mutex>
#include <utility>

#include "backends/strophe/LowDescriptor.h"

namespace supportsdk {

namespace {

// Deeper or longer than anything a server lets pass between clients, and small enough for
// libstrophe, which walks a stanza recursively, to get through it on this thread's stack.
constexpr std::uint64_t largestStanza = std::uint64_t{1} << 20U;

// The socket and certificate callbacks come without user data; a connection and its thread belong
// together.
thread_local StropheConnection* current = nullptr;

// Shared by all streams of the process: libstrophe's SHA-1 works in a static buffer, so that two
// log-ins at once would spoil each other's SCRAM proof.
std::mutex proofMutex;

void initializeOnce() {
    static std::once_flag once;
    std::call_once(once, xmpp_initialize);
}

// What the application has read off the socket since it was connected, and in `unread` what it has
// not.
std::uint64_t bytesRead(int socket, int& unread) {
    tcp_info info{};
    socklen_t size = sizeof info;
    unread = 0;
    if (getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &size) != 0 ||
        ioctl(socket, FIONREAD, &unread) != 0) {
        return 0;
    }
    return info.tcpi_bytes_received - std::min<std::uint64_t>(info.tcpi_bytes_received, unread);
}

}  // namespace

StropheConnection::StropheConnection(const ConnectionOptions& options, SocketGuard& guard,
                                     Callbacks callbacks)
    : guard_(guard),
      callbacks_(std::move(callbacks)),
      port_(options.port),
      proofLock_(proofMutex, std::defer_lock),
      log_{&logged, this} {
    initializeOnce();
    current = this;
    context_ = xmpp_ctx_new(nullptr, &log_);
    connection_ = xmpp_conn_new(context_);
    // Without stream management: nothing here resumes a stream, and a stream that is cut would stay
    // in its rooms for minutes as a ghost.
    long flags = XMPP_CONN_FLAG_DISABLE_SM;
    if (options.requireTls) flags |= XMPP_CONN_FLAG_MANDATORY_TLS;
    xmpp_conn_set_flags(connection_, flags);
    xmpp_conn_set_jid(connection_, options.jid.c_str());
    xmpp_conn_set_pass(connection_, options.password.c_str());
    if (!options.authorities.empty())
        xmpp_conn_set_cafile(connection_, options.authorities.c_str());
    xmpp_conn_set_certfail_handler(connection_, certificateRefused);
    xmpp_conn_set_sockopt_callback(connection_, socketMade);
}

StropheConnection::~StropheConnection() {
    callbacks_ = {};
    xmpp_conn_release(connection_);
    xmpp_ctx_free(context_);
    guard_.drop();
    current = nullptr;
}

void StropheConnection::connect(const PeerAddress& address) {
    if (xmpp_connect_client(connection_, address.numeric.c_str(), port_, changed, this) != XMPP_EOK)
        ended_ = true;
}

void StropheConnection::step() {
    xmpp_run_once(context_, 0);
    if (proofLock_.owns_lock()) proofLock_.unlock();
    // libstrophe would wait for the server to agree.
    if (facts_.malformed) ended_ = true;
}

void StropheConnection::send(std::string_view xml) {
    xmpp_send_raw(connection_, xml.data(), xml.size());
}

void StropheConnection::close() {
    xmpp_disconnect(connection_);
}

bool StropheConnection::hasQueuedSends() const {
    return xmpp_conn_send_queue_len(connection_) > 0;
}

bool StropheConnection::hasRead() {
    if (ended_) return false;
    const auto bytes = bytesRead(guard_.descriptor(), unread_);
    const bool more = std::exchange(bytesRead_, bytes) != bytes;
    if (std::exchange(stanzaSeen_, false)) bytesAtLastStanza_ = bytes;
    facts_.tooLarge = bytes > bytesAtLastStanza_ + largestStanza;
    ended_ = facts_.tooLarge;
    return more;
}

void StropheConnection::logged(void* self, xmpp_log_level_t, const char*, const char* line) {
    auto& connection = *static_cast<StropheConnection*>(self);
    connection.facts_.noteLogLine(line);
    // What follows this line is the proof; the lock is held to the end of the step. Any earlier, it
    // would be held through a TLS handshake, which may block.
    if (std::string_view(line).starts_with("RECV: <challenge") &&
        !connection.proofLock_.owns_lock()) {
        connection.proofLock_.lock();
    }
}

int StropheConnection::socketMade(xmpp_conn_t*, void* socket) {
    const int descriptor = *static_cast<const int*>(socket);
    if (descriptor >= LowDescriptor::limit || !current->guard_.adopt(descriptor)) {
        current->facts_.noDescriptor = true;
        return -1;
    }
    // A line of chat is worth a packet of its own.
    const int on = 1;
    setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return 0;
}

int StropheConnection::certificateRefused(const xmpp_tlscert_t*, const char* problem) {
    current->facts_.certificateProblem = problem && *problem ? problem : "not trusted";
    return 0;
}

int StropheConnection::stanzaReceived(xmpp_conn_t*, xmpp_stanza_t* stanza, void* self) {
    auto& connection = *static_cast<StropheConnection*>(self);
    connection.stanzaSeen_ = true;
    const char* xmlns = xmpp_stanza_get_ns(stanza);
    if (xmlns && std::string_view(xmlns) == XMPP_NS_STREAMS) {
        // A stream error ends the stream (RFC 6120, 4.9.1.1); the server may never close it.
        connection.noteStreamError(stanza);
        connection.ended_ = true;
        return 1;
    }
    // The answer that ends the log-in comes by here too; such names are libstrophe's own.
    const char* id = xmpp_stanza_get_id(stanza);
    if (id && std::string_view(id).starts_with("_xmpp_")) return 1;
    if (auto converted = connection.converter_.convert(stanza);
        converted && connection.callbacks_.received)
        connection.callbacks_.received(std::move(converted));
    return 1;
}

void StropheConnection::changed(xmpp_conn_t* handle, xmpp_conn_event_t event, int error,
                                xmpp_stream_error_t* streamError, void* self) {
    auto& connection = *static_cast<StropheConnection*>(self);
    if (event == XMPP_CONN_CONNECT) {
        connection.facts_.authenticated = true;
        xmpp_handler_add(handle, stanzaReceived, nullptr, nullptr, nullptr, self);
        const char* jid = xmpp_conn_get_bound_jid(handle);
        if (!jid) jid = xmpp_conn_get_jid(handle);
        if (connection.callbacks_.authenticated)
            connection.callbacks_.authenticated(jid ? jid : "");
        return;
    }
    connection.ended_ = true;
    connection.facts_.error = error;
    if (streamError && streamError->stanza) connection.noteStreamError(streamError->stanza);
    // libstrophe has closed its descriptor; the peer only hears of it once ours is closed too.
    connection.guard_.drop();
}

void StropheConnection::noteStreamError(xmpp_stanza_t* stanza) {
    facts_.condition = "undefined-condition";
    for (auto* child = xmpp_stanza_get_children(stanza); child;
         child = xmpp_stanza_get_next(child)) {
        const char* name = xmpp_stanza_get_name(child);
        const char* xmlns = xmpp_stanza_get_ns(child);
        if (!name || !xmlns || std::strcmp(xmlns, XMPP_NS_STREAMS_IETF) != 0) continue;
        if (std::strcmp(name, "text") != 0) {
            facts_.condition = name;
        } else if (char* text = xmpp_stanza_get_text(child)) {
            facts_.conditionText = text;
            xmpp_free(context_, text);
        }
    }
}

}  // namespace supportsdk
