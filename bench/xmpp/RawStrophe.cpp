#include "bench/xmpp/RawStrophe.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>

namespace supportsdk::bench {

namespace {
thread_local int madeSocket = -1;
}

RawStrophe::RawStrophe(std::uint16_t port) : wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    xmpp_initialize();
    thread_ = std::thread([this, port] { run(port); });
}

RawStrophe::~RawStrophe() {
    stop_ = true;
    eventfd_write(wake_, 1);
    thread_.join();
    close(wake_);
}

void RawStrophe::send(std::string xml) {
    {
        const std::lock_guard lock(mutex_);
        queue_.push_back(std::move(xml));
    }
    eventfd_write(wake_, 1);
}

void RawStrophe::run(std::uint16_t port) {
    pthread_setname_np(pthread_self(), threadName);
    xmpp_ctx_t* context = xmpp_ctx_new(nullptr, nullptr);
    xmpp_conn_t* connection = xmpp_conn_new(context);
    xmpp_conn_set_flags(connection, XMPP_CONN_FLAG_DISABLE_SM | XMPP_CONN_FLAG_DISABLE_TLS);
    xmpp_conn_set_jid(connection, "ann@raw.test/desk");
    xmpp_conn_set_pass(connection, "p");
    xmpp_conn_set_sockopt_callback(connection, [](xmpp_conn_t*, void* socket) {
        madeSocket = *static_cast<int*>(socket);
        const int on = 1;
        return setsockopt(madeSocket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    });
    const auto changed = [](xmpp_conn_t* handle, xmpp_conn_event_t event, int, xmpp_stream_error_t*,
                            void* self) {
        if (event != XMPP_CONN_CONNECT) return;
        const auto count = [](xmpp_conn_t*, xmpp_stanza_t*, void* owner) {
            ++static_cast<RawStrophe*>(owner)->received_;
            return 1;
        };
        xmpp_handler_add(handle, count, nullptr, "message", nullptr, self);
        static_cast<RawStrophe*>(self)->up_ = true;
    };
    xmpp_connect_client(connection, "127.0.0.1", port, changed, this);
    while (!stop_) {
        std::array<pollfd, 2> entries{{{madeSocket, POLLIN, 0}, {wake_, POLLIN, 0}}};
        poll(entries.data(), entries.size(), up_ ? -1 : 1);
        eventfd_t ignored = 0;
        eventfd_read(wake_, &ignored);
        {
            const std::lock_guard lock(mutex_);
            for (const auto& xml : queue_) xmpp_send_raw(connection, xml.data(), xml.size());
            queue_.clear();
        }
        xmpp_run_once(context, 0);
    }
    xmpp_conn_release(connection);
    xmpp_ctx_free(context);
}

}  // namespace supportsdk::bench
