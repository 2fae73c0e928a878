#pragma once

#include <libmnl/libmnl.h>

#include <cstdint>
#include <functional>
#include <memory>

namespace supportsdk {

enum class NetlinkAnswer {
    complete,  // all of it was visited
    refused,   // the kernel said no, such as "no route"
    failed     // the socket does not work
};

/// A socket to the kernel's routing tables (rtnetlink(7)). One thread at a time.
class NetlinkSocket {
 public:
    /// With `groups` (RTMGRP_...), changes arrive too. Check isOpen().
    explicit NetlinkSocket(std::uint32_t groups = 0);

    [[nodiscard]] bool isOpen() const { return socket_ != nullptr; }
    [[nodiscard]] int descriptor() const { return mnl_socket_get_fd(socket_.get()); }

    /// Sends `request`, whose sequence number and flags it completes, and visits each message of
    /// the answer.
    NetlinkAnswer ask(nlmsghdr& request, const std::function<void(const nlmsghdr&)>& visit);

    /// Reads away what has arrived; what was lost in between counts as read.
    void drain();

 private:
    struct Close {
        void operator()(mnl_socket* socket) const { mnl_socket_close(socket); }
    };
    std::unique_ptr<mnl_socket, Close> socket_;
    std::uint32_t sequence_ = 0;
};

/// Runs `visit` for each attribute of a message or a nest.
void forEachAttribute(const nlmsghdr& message, std::size_t headerBytes,
                      const std::function<void(const nlattr&)>& visit);
void forEachAttribute(const nlattr& nest, const std::function<void(const nlattr&)>& visit);

}  // namespace supportsdk
