#pragma once

#include <openssl/ssl.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <thread>

#include "service/prosody/CertificateAuthority.h"

namespace supportsdk::test {

/// One connection as its server sees it: raw bytes, so that answers can be as wrong as need be.
class LoopbackConnection {
 public:
    LoopbackConnection(int socket, SSL_CTX* tls);

    /// False when the peer is gone.
    bool send(std::string_view bytes);
    /// The next bytes; "" when the peer is gone or the server is destroyed.
    std::string receive();
    /// Says nothing until then.
    void stall();
    /// Waits, but no longer than until then; false in that case.
    bool pause(std::chrono::milliseconds duration) const;
    /// Ends the connection once its server lets go of it: with FIN, or with RST.
    void close() { ended_ = true; }
    void reset();
    [[nodiscard]] bool ended() const { return ended_; }

 private:
    int socket_;
    std::shared_ptr<SSL> ssl_;
    bool ended_ = false;
};

/// A server on 127.0.0.1, with TLS where it has a certificate. Connections end with it.
class LoopbackServer {
 public:
    /// Talks to one client, on a thread of its own; the connection ends when it returns.
    using Serve = std::function<void(LoopbackConnection&)>;

    explicit LoopbackServer(Serve serve,
                            const std::optional<service::CertificateFiles>& identity = {});
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    [[nodiscard]] std::uint16_t port() const { return port_; }
    [[nodiscard]] bool isSecure() const { return tls_ != nullptr; }
    /// How many there have been.
    [[nodiscard]] int connections() const { return connections_; }

 private:
    void listen();
    void acceptAll();
    void serveOne(int socket);

    const Serve serve_;
    std::shared_ptr<SSL_CTX> tls_;
    int listener_ = -1;
    std::uint16_t port_ = 0;
    std::atomic<int> connections_ = 0;
    std::mutex mutex_;
    std::set<int> open_;
    std::list<std::thread> workers_;
    std::thread acceptor_;
};

}  // namespace supportsdk::test
