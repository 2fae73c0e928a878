#include "tests/support/LoopbackHttpServer.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/err.h>
#include <poll.h>
#include <strings.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <optional>
#include <stdexcept>

namespace supportsdk::test {
namespace {

bool sameName(std::string_view a, std::string_view b) {
    return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

void blockBrokenPipes() {
    sigset_t pipes;
    sigemptyset(&pipes);
    sigaddset(&pipes, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipes, nullptr);
}

RecordedRequest parseHead(std::string_view head) {
    RecordedRequest request;
    const auto line = head.substr(0, head.find("\r\n"));
    request.method = line.substr(0, line.find(' '));
    const auto target = line.substr(std::min(line.size(), request.method.size() + 1));
    request.target = target.substr(0, target.find(' '));
    head.remove_prefix(std::min(head.size(), line.size() + 2));
    while (!head.empty()) {
        const auto field = head.substr(0, head.find("\r\n"));
        const auto colon = std::min(field.size(), field.find(':'));
        auto value = field.substr(std::min(field.size(), colon + 1));
        while (value.starts_with(' ')) value.remove_prefix(1);
        request.headers.emplace_back(field.substr(0, colon), value);
        head.remove_prefix(std::min(head.size(), field.size() + 2));
    }
    return request;
}

}  // namespace

std::string RecordedRequest::header(std::string_view name) const {
    for (const auto& [each, value] : headers) {
        if (sameName(each, name)) return value;
    }
    return "(none)";
}

bool RecordedRequest::hasHeader(std::string_view name) const {
    return header(name) != "(none)";
}

/// One accepted socket, plain or TLS. Non-blocking below, so that the server's end wakes every
/// wait.
class LoopbackHttpServer::Connection : public LoopbackConnection {
 public:
    Connection(int socket, int stop, SSL_CTX* tls) : socket_(socket), stop_(stop) {
        fcntl(socket_, F_SETFL, O_NONBLOCK);
        const int on = 1;
        setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
        if (!tls) return;
        ssl_.reset(SSL_new(tls), SSL_free);
        SSL_set_fd(ssl_.get(), socket_);
        SSL_set_accept_state(ssl_.get());
    }

    ~Connection() override {
        if (ssl_ && !reset_) SSL_shutdown(ssl_.get());
        if (reset_) {
            const linger now{1, 0};
            setsockopt(socket_, SOL_SOCKET, SO_LINGER, &now, sizeof(now));
        }
        ::close(socket_);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    bool send(std::string_view bytes) override {
        while (!bytes.empty()) {
            const long sent = retrying(POLLOUT, [&] {
                if (ssl_) return long{SSL_write(ssl_.get(), bytes.data(), int(bytes.size()))};
                return long{::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL)};
            });
            if (sent <= 0) return false;
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        }
        return true;
    }

    void stall() override {
        std::string ignored;
        while (receive(ignored)) ignored.clear();
        ended_ = true;
    }

    bool pause(std::chrono::milliseconds duration) override {
        pollfd stop{stop_, POLLIN, 0};
        return ::poll(&stop, 1, int(duration.count())) == 0;
    }

    void close() override { ended_ = true; }
    void reset() override { ended_ = reset_ = true; }
    [[nodiscard]] bool ended() const { return ended_; }

    /// The next request in whole; nothing when the peer went away first.
    std::optional<RecordedRequest> next() {
        std::size_t end = 0;
        while ((end = buffer_.find("\r\n\r\n")) == std::string::npos) {
            if (!receive(buffer_)) return std::nullopt;
            if (buffer_.starts_with('\x16')) return std::nullopt;  // TLS, to a server without it
        }
        RecordedRequest request = parseHead(std::string_view(buffer_).substr(0, end));
        buffer_.erase(0, end + 4);
        std::size_t length = 0;
        if (request.hasHeader("Content-Length"))
            length = std::stoul(request.header("Content-Length"));
        while (buffer_.size() < length) {
            if (!receive(buffer_)) return std::nullopt;
        }
        request.body = buffer_.substr(0, length);
        buffer_.erase(0, length);
        return request;
    }

 private:
    bool receive(std::string& into) {
        char chunk[16384];
        const long got = retrying(POLLIN, [&] {
            if (ssl_) return long{SSL_read(ssl_.get(), chunk, sizeof(chunk))};
            return long{::recv(socket_, chunk, sizeof(chunk), 0)};
        });
        if (got <= 0) return false;
        into.append(chunk, static_cast<std::size_t>(got));
        return true;
    }

    template <typename Attempt>
    long retrying(short direction, Attempt attempt) {
        while (true) {
            ERR_clear_error();
            const long done = attempt();
            if (done > 0) return done;
            short wanted = direction;
            if (ssl_) {
                const int error = SSL_get_error(ssl_.get(), int(done));
                if (error != SSL_ERROR_WANT_READ && error != SSL_ERROR_WANT_WRITE) return -1;
                wanted = error == SSL_ERROR_WANT_READ ? POLLIN : POLLOUT;
            } else if (done == 0 || errno != EAGAIN) {
                return -1;
            }
            pollfd waits[] = {{socket_, wanted, 0}, {stop_, POLLIN, 0}};
            if (::poll(waits, 2, -1) < 0 || waits[1].revents) return -1;
        }
    }

    int socket_;
    int stop_;
    std::shared_ptr<SSL> ssl_;
    std::string buffer_;
    bool ended_ = false;
    bool reset_ = false;
};

LoopbackHttpServer::LoopbackHttpServer(const std::optional<service::CertificateFiles>& identity) {
    if (identity) {
        tls_.reset(SSL_CTX_new(TLS_server_method()), SSL_CTX_free);
        SSL_CTX_use_certificate_file(tls_.get(), identity->certificate.c_str(), SSL_FILETYPE_PEM);
        SSL_CTX_use_PrivateKey_file(tls_.get(), identity->key.c_str(), SSL_FILETYPE_PEM);
    }
    listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    int stop[2] = {-1, -1};
    if (::bind(listener_, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        ::listen(listener_, 64) != 0 ||
        ::getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) != 0 ||
        ::pipe2(stop, O_CLOEXEC) != 0) {
        throw std::runtime_error("no loopback socket");
    }
    port_ = ntohs(address.sin_port);
    stopRead_ = stop[0];
    stopWrite_ = stop[1];
    acceptor_ = std::thread([this] { acceptAll(); });
}

LoopbackHttpServer::~LoopbackHttpServer() {
    ::close(stopWrite_);  // the other end stays readable for every thread that waits
    acceptor_.join();
    for (auto& worker : workers_) worker.join();
    ::close(stopRead_);
    ::close(listener_);
}

std::string LoopbackHttpServer::url(std::string_view target) const {
    return (tls_ ? "https" : "http") + ("://127.0.0.1:" + std::to_string(port_)) +
           std::string(target);
}

void LoopbackHttpServer::on(const std::string& path, Handler handler) {
    const std::lock_guard lock(mutex_);
    handlers_[path] = std::move(handler);
}

void LoopbackHttpServer::answer(const std::string& path, int status, std::string body,
                                Headers headers) {
    on(path,
       [bytes = response(status, body, headers)](
           const RecordedRequest&, LoopbackConnection& connection) { connection.send(bytes); });
}

void LoopbackHttpServer::answerRaw(const std::string& path, std::string bytes) {
    on(path, [bytes = std::move(bytes)](const RecordedRequest&, LoopbackConnection& connection) {
        connection.send(bytes);
        connection.close();
    });
}

std::string LoopbackHttpServer::response(int status, std::string_view body,
                                         const Headers& headers) {
    std::string bytes = "HTTP/1.1 " + std::to_string(status) + " Scripted\r\n";
    for (const auto& [name, value] : headers) bytes.append(name + ": " + value + "\r\n");
    bytes.append("Content-Length: " + std::to_string(body.size()) + "\r\n\r\n");
    return bytes.append(body);
}

std::vector<RecordedRequest> LoopbackHttpServer::requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
}

RecordedRequest LoopbackHttpServer::lastRequest(const std::string& path) const {
    RecordedRequest last;
    for (auto& each : requests()) {
        if (each.target.substr(0, each.target.find('?')) == path) last = std::move(each);
    }
    return last;
}

std::size_t LoopbackHttpServer::requestCount(const std::string& path) const {
    std::size_t count = 0;
    for (const auto& each : requests())
        count += each.target.substr(0, each.target.find('?')) == path;
    return count;
}

void LoopbackHttpServer::acceptAll() {
    blockBrokenPipes();
    while (true) {
        pollfd waits[] = {{listener_, POLLIN, 0}, {stopRead_, POLLIN, 0}};
        if (::poll(waits, 2, -1) < 0 || waits[1].revents) return;
        const int socket = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0) continue;
        ++connections_;
        workers_.emplace_back([this, socket] {
            Connection connection(socket, stopRead_, tls_.get());
            serve(connection);
        });
    }
}

void LoopbackHttpServer::serve(Connection& connection) {
    while (auto request = connection.next()) {
        Handler handler;
        {
            const std::lock_guard lock(mutex_);
            const auto found = handlers_.find(request->target.substr(0, request->target.find('?')));
            if (found != handlers_.end()) handler = found->second;
            requests_.push_back(*request);
        }
        if (handler) {
            handler(*request, connection);
        } else {
            connection.send(response(404, ""));
        }
        if (connection.ended()) return;
    }
}

}  // namespace supportsdk::test
