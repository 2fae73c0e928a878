#pragma once

#include <openssl/ssl.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "service/prosody/CertificateAuthority.h"

namespace supportsdk::test {

struct RecordedRequest {
    std::string method;
    /// Path and query, as they came.
    std::string target;
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;

    /// The value of the first header of that name (any case); "(none)" when there is none.
    [[nodiscard]] std::string header(std::string_view name) const;
    [[nodiscard]] bool hasHeader(std::string_view name) const;
};

/// One connection as a handler sees it: raw bytes, so that answers can be as wrong as need be.
class LoopbackConnection {
 public:
    virtual ~LoopbackConnection() = default;

    /// False when the peer is gone.
    virtual bool send(std::string_view bytes) = 0;
    /// Says nothing until the peer goes away or the server is destroyed.
    virtual void stall() = 0;
    /// Waits, but no longer than until the server is destroyed; false then.
    virtual bool pause(std::chrono::milliseconds duration) = 0;
    /// Ends the connection after the handler: with FIN, or with RST.
    virtual void close() = 0;
    virtual void reset() = 0;
};

/// An HTTP/1.1 server on 127.0.0.1 that does what real servers should not: stalls, cuts, drips,
/// resets. A thread for each connection; connections are kept unless a handler ends them. Handlers
/// run on those threads and are set before the first request.
class LoopbackHttpServer {
 public:
    using Handler = std::function<void(const RecordedRequest&, LoopbackConnection&)>;
    using Headers = std::vector<std::pair<std::string, std::string>>;

    /// https with a certificate, http without.
    explicit LoopbackHttpServer(const std::optional<service::CertificateFiles>& identity = {});
    ~LoopbackHttpServer();
    LoopbackHttpServer(const LoopbackHttpServer&) = delete;
    LoopbackHttpServer& operator=(const LoopbackHttpServer&) = delete;

    [[nodiscard]] int port() const { return port_; }
    /// "http://127.0.0.1:PORT" + `target`.
    [[nodiscard]] std::string url(std::string_view target = "/") const;

    /// What happens on `path` (without its query); paths with no handler get a 404.
    void on(const std::string& path, Handler handler);
    /// A complete response with Content-Length.
    void answer(const std::string& path, int status, std::string body = {}, Headers headers = {});
    /// These bytes, then the end of the connection.
    void answerRaw(const std::string& path, std::string bytes);

    /// The bytes of a complete response.
    [[nodiscard]] static std::string response(int status, std::string_view body,
                                              const Headers& headers = {});

    [[nodiscard]] std::vector<RecordedRequest> requests() const;
    /// The latest request for `path`; an empty one when there is none.
    [[nodiscard]] RecordedRequest lastRequest(const std::string& path) const;
    [[nodiscard]] std::size_t requestCount(const std::string& path) const;
    [[nodiscard]] int connections() const { return connections_; }

 private:
    class Connection;

    void acceptAll();
    void serve(Connection& connection);

    std::shared_ptr<SSL_CTX> tls_;
    int listener_ = -1;
    int port_ = 0;
    int stopRead_ = -1;
    int stopWrite_ = -1;
    std::atomic<int> connections_ = 0;
    mutable std::mutex mutex_;
    std::map<std::string, Handler> handlers_;
    std::vector<RecordedRequest> requests_;
    std::list<std::thread> workers_;
    std::thread acceptor_;
};

}  // namespace supportsdk::test
