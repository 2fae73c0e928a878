#include "backends/netlink/NetlinkSocket.h"

#include <sys/socket.h>
#include <sys/time.h>

#include <array>
#include <cerrno>

namespace supportsdk {

namespace {

// The kernel never sends more at once.
using Buffer = std::array<char, 32'768>;

using Visitor = std::function<void(const nlmsghdr&)>;
using AttributeVisitor = std::function<void(const nlattr&)>;

int visitMessage(const nlmsghdr* message, void* visitor) {
    (*static_cast<const Visitor*>(visitor))(*message);
    return MNL_CB_OK;
}

int visitAttribute(const nlattr* attribute, void* visitor) {
    (*static_cast<const AttributeVisitor*>(visitor))(*attribute);
    return MNL_CB_OK;
}

}  // namespace

NetlinkSocket::NetlinkSocket(std::uint32_t groups)
    : socket_(mnl_socket_open2(NETLINK_ROUTE, SOCK_CLOEXEC)) {
    if (!socket_) return;
    // The kernel answers at once; this only keeps a fault from hanging the caller.
    const timeval limit{1, 0};
    setsockopt(descriptor(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    if (mnl_socket_bind(socket_.get(), groups, MNL_SOCKET_AUTOPID) < 0) socket_.reset();
}

NetlinkAnswer NetlinkSocket::ask(nlmsghdr& request, const Visitor& visit) {
    request.nlmsg_seq = ++sequence_;
    request.nlmsg_flags |= NLM_F_REQUEST | NLM_F_ACK;
    if (mnl_socket_sendto(socket_.get(), &request, request.nlmsg_len) < 0)
        return NetlinkAnswer::failed;
    const auto port = mnl_socket_get_portid(socket_.get());
    Buffer buffer{};
    while (true) {
        const auto size = mnl_socket_recvfrom(socket_.get(), buffer.data(), buffer.size());
        if (size < 0 && errno == EINTR) continue;
        if (size < 0) return NetlinkAnswer::failed;
        const int more = mnl_cb_run(buffer.data(), static_cast<std::size_t>(size), sequence_, port,
                                    visitMessage, const_cast<Visitor*>(&visit));
        // A table that changed while it was read, or an answer that is not ours, tells nothing.
        if (more < 0 && (errno == EINTR || errno == EPROTO)) return NetlinkAnswer::failed;
        if (more < 0) return NetlinkAnswer::refused;
        if (more == MNL_CB_STOP) return NetlinkAnswer::complete;
    }
}

void NetlinkSocket::drain() {
    Buffer buffer{};
    while (true) {
        const auto size = recv(descriptor(), buffer.data(), buffer.size(), MSG_DONTWAIT);
        // An overrun says that changes were lost, which is a change as well.
        if (size < 0 && errno != EINTR && errno != ENOBUFS) return;
    }
}

void forEachAttribute(const nlmsghdr& message, std::size_t headerBytes,
                      const AttributeVisitor& visit) {
    mnl_attr_parse(&message, static_cast<unsigned>(headerBytes), visitAttribute,
                   const_cast<AttributeVisitor*>(&visit));
}

void forEachAttribute(const nlattr& nest, const AttributeVisitor& visit) {
    mnl_attr_parse_nested(&nest, visitAttribute, const_cast<AttributeVisitor*>(&visit));
}

}  // namespace supportsdk
