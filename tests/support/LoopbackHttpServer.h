#pragma once

#include <map>
#include <utility>
#include <vector>

#include "tests/support/LoopbackServer.h"

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
    /// The target without its query.
    [[nodiscard]] std::string path() const { return target.substr(0, target.find('?')); }
};

/// An HTTP/1.1 server on 127.0.0.1 that does what real servers should not: stalls, cuts, drips,
/// resets. Connections are kept unless a handler ends them. Handlers run on the threads of their
/// connections and are set before the first request.
class LoopbackHttpServer {
 public:
    using Handler = std::function<void(const RecordedRequest&, LoopbackConnection&)>;
    using Headers = std::vector<std::pair<std::string, std::string>>;

    /// https with a certificate, http without.
    explicit LoopbackHttpServer(const std::optional<service::CertificateFiles>& identity = {})
        : server_([this](LoopbackConnection& connection) { serve(connection); }, identity) {}

    [[nodiscard]] int port() const { return server_.port(); }
    /// "http://127.0.0.1:PORT" + `target`.
    [[nodiscard]] std::string url(std::string_view target = "/") const;

    /// What happens on `path` (without its query); paths with no handler get a 404.
    void on(const std::string& path, Handler handler);
    /// A complete response with Content-Length.
    void answer(const std::string& path, int status, const std::string& body = {},
                const Headers& headers = {});
    /// These bytes, then the end of the connection.
    void answerRaw(const std::string& path, const std::string& bytes);

    /// The bytes of a complete response.
    [[nodiscard]] static std::string response(int status, std::string_view body,
                                              const Headers& headers = {});

    [[nodiscard]] std::vector<RecordedRequest> requests() const;
    /// The latest request for `path`; an empty one when there is none.
    [[nodiscard]] RecordedRequest lastRequest(const std::string& path) const;
    [[nodiscard]] std::size_t requestCount(const std::string& path) const;
    [[nodiscard]] int connections() const { return server_.connections(); }

 private:
    void serve(LoopbackConnection& connection);

    mutable std::mutex mutex_;
    std::map<std::string, Handler> handlers_;
    std::vector<RecordedRequest> requests_;
    LoopbackServer server_;  // the last one: its threads use the others
};

}  // namespace supportsdk::test
