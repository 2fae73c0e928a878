#include "backends/netlink/ReachabilityRules.h"

// The kernel's header, not the C library's: only it knows IFF_LOWER_UP.
#include <linux/if.h>
#include <linux/if_arp.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace supportsdk {

bool isUp(const NetworkLink& link) {
    constexpr std::uint32_t up = IFF_UP | IFF_LOWER_UP;
    return (link.flags & up) == up;
}

bool isCellular(const NetworkLink& link) {
    constexpr std::array<std::string_view, 2> kinds = {"wwan", "rmnet"};
    constexpr std::array<std::string_view, 4> names = {"wwan", "wwp", "rmnet", "ppp"};
    const auto isKind = [&](std::string_view kind) {
        return link.kind == kind || link.deviceType == kind;
    };
    const auto isName = [&](std::string_view name) { return link.name.starts_with(name); };
    return link.type == ARPHRD_RAWIP || link.type == ARPHRD_PPP ||
           std::any_of(kinds.begin(), kinds.end(), isKind) ||
           std::any_of(names.begin(), names.end(), isName);
}

bool carriesLinkLocal(const NetworkLink& link) {
    return link.type == ARPHRD_ETHER && isUp(link) && (link.flags & IFF_BROADCAST) != 0 &&
           !isCellular(link);
}

std::uint32_t flagsOf(const NetworkRoute& route, const NetworkLink& link) {
    if (!isUp(link)) return 0;
    std::uint32_t flags = reachabilityReachable;
    if (route.local) flags |= reachabilityIsLocalAddress;
    if (!route.hasGateway) flags |= reachabilityIsDirect;
    if (isCellular(link)) flags |= reachabilityIsWWAN;
    return flags;
}

}  // namespace supportsdk
