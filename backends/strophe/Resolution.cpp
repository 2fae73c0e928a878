#include "backends/strophe/Resolution.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <mutex>

#include "backends/posix/Threads.h"

namespace supportsdk {

namespace {

bool isLoopback(const sockaddr& address) {
    if (address.sa_family == AF_INET) {
        const auto& v4 = reinterpret_cast<const sockaddr_in&>(address);
        return (ntohl(v4.sin_addr.s_addr) >> 24U) == 127;
    }
    const auto& v6 = reinterpret_cast<const sockaddr_in6&>(address);
    return IN6_IS_ADDR_LOOPBACK(&v6.sin6_addr);
}

std::vector<PeerAddress> lookUp(const std::string& host, int flags) {
    std::vector<PeerAddress> found;
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = flags;
    addrinfo* list = nullptr;
    if (getaddrinfo(host.c_str(), nullptr, &hints, &list) != 0) return found;
    for (const auto* each = list; each; each = each->ai_next) {
        char text[NI_MAXHOST];
        if (getnameinfo(each->ai_addr, each->ai_addrlen, text, sizeof text, nullptr, 0,
                        NI_NUMERICHOST) == 0) {
            found.push_back({text, isLoopback(*each->ai_addr)});
        }
    }
    freeaddrinfo(list);
    return found;
}

}  // namespace

struct Resolution::State {
    State() : done(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
    ~State() { close(done); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    void answer(std::vector<PeerAddress> found) {
        const std::lock_guard lock(mutex);
        addresses = std::move(found);
        eventfd_write(done, 1);
    }

    const int done;
    std::mutex mutex;
    std::vector<PeerAddress> addresses;
};

Resolution::Resolution(const std::string& host) : state_(std::make_shared<State>()) {
    auto numeric = lookUp(host, AI_NUMERICHOST);
    if (!numeric.empty() || host.empty()) {
        state_->answer(std::move(numeric));
        return;
    }
    auto thread = startThread(
        "support-dns", [state = state_, host] { state->answer(lookUp(host, AI_ADDRCONFIG)); });
    if (thread.joinable()) {
        thread.detach();
    } else {
        state_->answer({});
    }
}

Resolution::~Resolution() = default;

int Resolution::descriptor() const {
    return state_->done;
}

std::vector<PeerAddress> Resolution::addresses() const {
    const std::lock_guard lock(state_->mutex);
    return state_->addresses;
}

}  // namespace supportsdk
