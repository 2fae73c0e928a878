#pragma once

#include <cstdint>
#include <string>

#include "supportsdk/platform/Reachability.h"

namespace supportsdk {

/// A network interface, as the kernel tells of it.
struct NetworkLink {
    int index = 0;
    /// IFF_...
    std::uint32_t flags = 0;
    /// ARPHRD_...
    std::uint16_t type = 0;
    std::string name;
    /// Kind of a virtual link ("veth", "wwan", ...) and DEVTYPE of its device ("wlan", "wwan",
    /// ...);
    /// "" when there is none.
    std::string kind;
    std::string deviceType;
};

/// The way that a packet to one address takes first.
struct NetworkRoute {
    int linkIndex = 0;
    bool hasGateway = false;
    /// To an address of this device.
    bool local = false;
};

/// Switched on, and with a carrier.
bool isUp(const NetworkLink& link);

/// Whether the link leads into a cellular network: its kind or device type is wwan or rmnet, it
/// carries raw IP or PPP, or it is named as such links are (wwan*, wwp*, rmnet*, ppp*).
bool isCellular(const NetworkLink& link);

/// Whether devices on the same segment can be met there without any set-up: an Ethernet or Wi-Fi
/// link that is up and can broadcast.
bool carriesLinkLocal(const NetworkLink& link);

/// 0 when the link is down. "Direct" means that no gateway is on the way.
std::uint32_t flagsOf(const NetworkRoute& route, const NetworkLink& link);

}  // namespace supportsdk
