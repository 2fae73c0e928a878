#pragma once

#include <netinet/in.h>

#include <optional>
#include <variant>
#include <vector>

#include "backends/netlink/NetlinkSocket.h"
#include "backends/netlink/ReachabilityRules.h"

namespace supportsdk {

using IpAddress = std::variant<in_addr, sockaddr_in6>;

/// What the kernel's tables say about the way to an address. Each question is asked afresh.
class NetworkTables {
 public:
    [[nodiscard]] bool isOpen() const { return socket_.isOpen(); }

    /// The flags for `address`; nothing when the kernel cannot be asked. The zero address stands
    /// for the internet: reachable when a default route lies on a link that is up. 169.254.0.0
    /// stands for the local network: reachable and direct when a link carries it.
    std::optional<std::uint32_t> flagsFor(const IpAddress& address);

 private:
    std::optional<std::uint32_t> flagsByRoute(const IpAddress& address);
    std::optional<std::uint32_t> flagsByDefaultRoutes();
    std::optional<std::uint32_t> flagsByLinks();

    NetlinkAnswer findRoute(const IpAddress& address, std::optional<NetworkRoute>& route);
    /// The default routes of both families, the preferred ones of each first.
    std::optional<std::vector<NetworkRoute>> defaultRoutes();
    std::optional<std::vector<NetworkLink>> links();

    NetlinkSocket socket_;
};

}  // namespace supportsdk
