#include "backends/netlink/ReachabilityTarget.h"

#include <netdb.h>
#include <sys/socket.h>

namespace supportsdk {

namespace {

/// Blocks until the resolver has an answer or gives up.
std::vector<IpAddress> resolve(const std::string& name) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* first = nullptr;
    if (getaddrinfo(name.c_str(), nullptr, &hints, &first) != 0) return {};
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> found(first, &freeaddrinfo);
    std::vector<IpAddress> addresses;
    for (const auto* entry = found.get(); entry; entry = entry->ai_next) {
        if (entry->ai_family == AF_INET)
            addresses.emplace_back(reinterpret_cast<const sockaddr_in*>(entry->ai_addr)->sin_addr);
        if (entry->ai_family == AF_INET6)
            addresses.emplace_back(*reinterpret_cast<const sockaddr_in6*>(entry->ai_addr));
    }
    return addresses;
}

}  // namespace

std::optional<std::uint32_t> ReachabilityTarget::flags() {
    std::unique_lock lock(mutex_);
    const auto addresses = addresses_;
    lock.unlock();
    NetworkTables tables;
    if (!addresses || !tables.isOpen()) return std::nullopt;
    std::uint32_t best = 0;
    for (const auto& address : *addresses) {
        const auto flags = tables.flagsFor(address);
        if (!flags) return std::nullopt;
        if (best = *flags; best != 0) break;
    }
    return best;
}

void ReachabilityTarget::lookUp() {
    if (name_.empty()) return;
    {
        const std::lock_guard lock(mutex_);
        // An answer under way may be from before the change that asks for this one.
        outdated_ = lookingUp_;
        if (std::exchange(lookingUp_, true)) return;
    }
    background_->post([weak = weak_from_this(), name = name_] {
        auto addresses = resolve(name);
        if (const auto self = weak.lock()) self->store(std::move(addresses));
    });
}

void ReachabilityTarget::setLookedUp(std::function<void()> lookedUp) {
    const std::lock_guard lock(mutex_);
    lookedUp_ = std::move(lookedUp);
}

void ReachabilityTarget::store(std::vector<IpAddress> addresses) {
    std::unique_lock lock(mutex_);
    addresses_ = std::move(addresses);
    lookingUp_ = false;
    const bool again = std::exchange(outdated_, false);
    const auto lookedUp = lookedUp_;
    lock.unlock();
    if (lookedUp) lookedUp();
    if (again) lookUp();
}

}  // namespace supportsdk
