#include "backends/netlink/NetworkTables.h"

#include <linux/if_link.h>
#include <linux/rtnetlink.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>

namespace supportsdk {

namespace {

constexpr std::uint32_t linkLocalNetwork = 0xA9FE0000;  // 169.254.0.0

struct Request {
    Request(std::uint16_t type, std::uint16_t flags) : header(*mnl_nlmsg_put_header(bytes.data())) {
        header.nlmsg_type = type;
        header.nlmsg_flags = flags;
    }
    Request(const Request&) = delete;
    Request& operator=(const Request&) = delete;

    template <typename Extra>
    Extra& put() {
        return *static_cast<Extra*>(mnl_nlmsg_put_extra_header(&header, sizeof(Extra)));
    }

    alignas(nlmsghdr) std::array<char, 512> bytes{};
    nlmsghdr& header;
};

bool isZero(const IpAddress& address) {
    if (const auto* four = std::get_if<in_addr>(&address)) return four->s_addr == INADDR_ANY;
    return IN6_IS_ADDR_UNSPECIFIED(&std::get<sockaddr_in6>(address).sin6_addr);
}

bool isLinkLocalNetwork(const IpAddress& address) {
    const auto* four = std::get_if<in_addr>(&address);
    return four && ntohl(four->s_addr) == linkLocalNetwork;
}

/// DEVTYPE of the device, where udev's view of it is mounted.
std::string deviceTypeOf(const std::string& name) {
    std::ifstream in("/sys/class/net/" + name + "/uevent");
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with("DEVTYPE=")) return line.substr(8);
    }
    return {};
}

NetworkLink readLink(const nlmsghdr& message) {
    const auto& info = *static_cast<const ifinfomsg*>(mnl_nlmsg_get_payload(&message));
    NetworkLink link;
    link.index = info.ifi_index;
    link.flags = info.ifi_flags;
    link.type = info.ifi_type;
    forEachAttribute(message, sizeof info, [&](const nlattr& attribute) {
        const auto kind = mnl_attr_get_type(&attribute);
        if (kind == IFLA_IFNAME && mnl_attr_validate(&attribute, MNL_TYPE_NUL_STRING) == 0)
            link.name = mnl_attr_get_str(&attribute);
        if (kind != IFLA_LINKINFO) return;
        forEachAttribute(attribute, [&](const nlattr& inner) {
            if (mnl_attr_get_type(&inner) == IFLA_INFO_KIND &&
                mnl_attr_validate(&inner, MNL_TYPE_NUL_STRING) == 0)
                link.kind = mnl_attr_get_str(&inner);
        });
    });
    link.deviceType = deviceTypeOf(link.name);
    return link;
}

struct RouteEntry {
    std::uint32_t metric = 0;
    std::uint32_t table = 0;
    std::vector<NetworkRoute> hops;
};

/// The hops of a route over several links at once.
std::vector<NetworkRoute> readHops(const nlattr& attribute) {
    std::vector<NetworkRoute> hops;
    const auto* first = static_cast<const char*>(mnl_attr_get_payload(&attribute));
    std::size_t rest = mnl_attr_get_payload_len(&attribute);
    while (rest >= sizeof(rtnexthop)) {
        rtnexthop hop{};
        std::memcpy(&hop, first, sizeof hop);
        if (hop.rtnh_len < sizeof hop || hop.rtnh_len > rest) break;
        hops.push_back({hop.rtnh_ifindex, hop.rtnh_len > sizeof hop, false});
        const std::size_t step = std::min<std::size_t>(RTNH_ALIGN(hop.rtnh_len), rest);
        first += step;
        rest -= step;
    }
    return hops;
}

RouteEntry readRoute(const nlmsghdr& message) {
    const auto& info = *static_cast<const rtmsg*>(mnl_nlmsg_get_payload(&message));
    RouteEntry entry;
    entry.table = info.rtm_table;
    NetworkRoute route;
    route.local = info.rtm_type == RTN_LOCAL;
    forEachAttribute(message, sizeof info, [&](const nlattr& attribute) {
        const auto kind = mnl_attr_get_type(&attribute);
        const bool number = mnl_attr_validate(&attribute, MNL_TYPE_U32) == 0;
        if (kind == RTA_OIF && number)
            route.linkIndex = static_cast<int>(mnl_attr_get_u32(&attribute));
        if (kind == RTA_GATEWAY || kind == RTA_VIA) route.hasGateway = true;
        if (kind == RTA_PRIORITY && number) entry.metric = mnl_attr_get_u32(&attribute);
        if (kind == RTA_TABLE && number) entry.table = mnl_attr_get_u32(&attribute);
        if (kind == RTA_MULTIPATH) entry.hops = readHops(attribute);
    });
    if (entry.hops.empty()) entry.hops.push_back(route);
    return entry;
}

/// Whether packets go anywhere on such a route.
bool delivers(const nlmsghdr& message) {
    const auto type = static_cast<const rtmsg*>(mnl_nlmsg_get_payload(&message))->rtm_type;
    return type >= RTN_UNICAST && type <= RTN_MULTICAST;
}

const NetworkLink* findLink(const std::vector<NetworkLink>& links, int index) {
    const auto found = std::find_if(links.begin(), links.end(),
                                    [index](const auto& link) { return link.index == index; });
    return found == links.end() ? nullptr : &*found;
}

}  // namespace

std::optional<std::uint32_t> NetworkTables::flagsFor(const IpAddress& address) {
    if (!isOpen()) return std::nullopt;
    if (isZero(address)) return flagsByDefaultRoutes();
    if (isLinkLocalNetwork(address)) return flagsByLinks();
    return flagsByRoute(address);
}

std::optional<std::uint32_t> NetworkTables::flagsByRoute(const IpAddress& address) {
    std::optional<NetworkRoute> route;
    if (findRoute(address, route) == NetlinkAnswer::failed) return std::nullopt;
    if (!route) return 0;
    const auto all = links();
    if (!all) return std::nullopt;
    const auto* link = findLink(*all, route->linkIndex);
    return link ? flagsOf(*route, *link) : 0;
}

std::optional<std::uint32_t> NetworkTables::flagsByDefaultRoutes() {
    const auto routes = defaultRoutes();
    const auto all = routes ? links() : std::nullopt;
    if (!all) return std::nullopt;
    for (const auto& route : *routes) {
        const auto* link = findLink(*all, route.linkIndex);
        if (link && isUp(*link)) return flagsOf(route, *link);
    }
    return 0;
}

std::optional<std::uint32_t> NetworkTables::flagsByLinks() {
    const auto all = links();
    if (!all) return std::nullopt;
    const bool carried = std::any_of(all->begin(), all->end(), carriesLinkLocal);
    return carried ? reachabilityReachable | reachabilityIsDirect : 0;
}

NetlinkAnswer NetworkTables::findRoute(const IpAddress& address,
                                       std::optional<NetworkRoute>& route) {
    Request request(RTM_GETROUTE, 0);
    auto& question = request.put<rtmsg>();
    if (const auto* four = std::get_if<in_addr>(&address)) {
        question.rtm_family = AF_INET;
        question.rtm_dst_len = 32;
        mnl_attr_put(&request.header, RTA_DST, sizeof *four, four);
    } else {
        const auto& six = std::get<sockaddr_in6>(address);
        question.rtm_family = AF_INET6;
        question.rtm_dst_len = 128;
        mnl_attr_put(&request.header, RTA_DST, sizeof six.sin6_addr, &six.sin6_addr);
        if (six.sin6_scope_id != 0) mnl_attr_put_u32(&request.header, RTA_OIF, six.sin6_scope_id);
    }
    return socket_.ask(request.header, [&](const nlmsghdr& message) {
        if (delivers(message)) route = readRoute(message).hops.front();
    });
}

std::optional<std::vector<NetworkRoute>> NetworkTables::defaultRoutes() {
    std::vector<NetworkRoute> routes;
    for (const int family : {AF_INET, AF_INET6}) {
        std::vector<RouteEntry> entries;
        Request request(RTM_GETROUTE, NLM_F_DUMP);
        request.put<rtmsg>().rtm_family = static_cast<unsigned char>(family);
        const auto answer = socket_.ask(request.header, [&](const nlmsghdr& message) {
            const auto& info = *static_cast<const rtmsg*>(mnl_nlmsg_get_payload(&message));
            if (info.rtm_dst_len != 0 || info.rtm_type != RTN_UNICAST) return;
            auto entry = readRoute(message);
            if (entry.table == RT_TABLE_MAIN) entries.push_back(std::move(entry));
        });
        if (answer == NetlinkAnswer::failed) return std::nullopt;
        std::stable_sort(entries.begin(), entries.end(),
                         [](const auto& a, const auto& b) { return a.metric < b.metric; });
        for (const auto& entry : entries)
            routes.insert(routes.end(), entry.hops.begin(), entry.hops.end());
    }
    return routes;
}

std::optional<std::vector<NetworkLink>> NetworkTables::links() {
    std::vector<NetworkLink> all;
    Request request(RTM_GETLINK, NLM_F_DUMP);
    request.put<ifinfomsg>().ifi_family = AF_UNSPEC;
    const auto answer = socket_.ask(
        request.header, [&](const nlmsghdr& message) { all.push_back(readLink(message)); });
    if (answer == NetlinkAnswer::failed) return std::nullopt;
    return all;
}

}  // namespace supportsdk
