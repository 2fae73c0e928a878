#include "tests/support/LoopbackServer.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>

namespace supportsdk::test {

LoopbackConnection::LoopbackConnection(int socket, SSL_CTX* tls) : socket_(socket) {
    const int on = 1;
    setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
    if (!tls) return;
    ssl_.reset(SSL_new(tls), [](SSL* ssl) {
        SSL_shutdown(ssl);
        SSL_free(ssl);
    });
    SSL_set_fd(ssl_.get(), socket_);
    SSL_set_accept_state(ssl_.get());
}

bool LoopbackConnection::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const long sent = ssl_ ? SSL_write(ssl_.get(), bytes.data(), int(bytes.size()))
                               : ::send(socket_, bytes.data(), bytes.size(), 0);
        if (sent <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

std::string LoopbackConnection::receive() {
    std::array<char, 65536> bytes{};
    const long got = ssl_ ? SSL_read(ssl_.get(), bytes.data(), int(bytes.size()))
                          : ::recv(socket_, bytes.data(), bytes.size(), 0);
    return {bytes.data(), static_cast<std::size_t>(std::max(got, 0L))};
}

void LoopbackConnection::stall() {
    while (!receive().empty()) {
    }
    ended_ = true;
}

bool LoopbackConnection::pause(std::chrono::milliseconds duration) const {
    pollfd end{socket_, POLLRDHUP, 0};
    return poll(&end, 1, int(duration.count())) == 0;
}

void LoopbackConnection::reset() {
    const linger now{1, 0};
    setsockopt(socket_, SOL_SOCKET, SO_LINGER, &now, sizeof(now));
    ended_ = true;
}

LoopbackServer::LoopbackServer(Serve serve,
                               const std::optional<service::CertificateFiles>& identity)
    : serve_(std::move(serve)) {
    if (identity) {
        tls_.reset(SSL_CTX_new(TLS_server_method()), SSL_CTX_free);
        SSL_CTX_use_certificate_file(tls_.get(), identity->certificate.c_str(), SSL_FILETYPE_PEM);
        SSL_CTX_use_PrivateKey_file(tls_.get(), identity->key.c_str(), SSL_FILETYPE_PEM);
    }
    listen();
    acceptor_ = std::thread([this] { acceptAll(); });
}

LoopbackServer::~LoopbackServer() {
    shutdown(listener_, SHUT_RDWR);
    acceptor_.join();
    {
        const std::lock_guard lock(mutex_);
        for (const int socket : open_) shutdown(socket, SHUT_RDWR);
    }
    for (auto& worker : workers_) worker.join();
    ::close(listener_);
}

void LoopbackServer::listen() {
    listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(listener_, generic, size) != 0 || ::listen(listener_, 64) != 0 ||
        getsockname(listener_, generic, &size) != 0)
        throw std::runtime_error("no loopback socket");
    port_ = ntohs(address.sin_port);
}

void LoopbackServer::acceptAll() {
    sigset_t pipes;
    sigemptyset(&pipes);
    sigaddset(&pipes, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipes, nullptr);
    while (true) {
        const int socket = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0) return;
        ++connections_;
        const std::lock_guard lock(mutex_);
        open_.insert(socket);
        workers_.emplace_back([this, socket] { serveOne(socket); });
    }
}

void LoopbackServer::serveOne(int socket) {
    {
        LoopbackConnection connection(socket, tls_.get());
        serve_(connection);
    }
    const std::lock_guard lock(mutex_);
    open_.erase(socket);
    ::close(socket);
}

}  // namespace supportsdk::test
