#include "backends/netlink/NetworkWatcher.h"

#include <linux/rtnetlink.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "backends/posix/Threads.h"

namespace supportsdk {

namespace {

constexpr std::uint32_t groups =
    RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE;

/// A link that comes or goes changes several tables one after the other: a burst has ended when
/// nothing came for this long. A storm without an end is cut after so many pieces.
constexpr int quietMilliseconds = 20;
constexpr int longestBurst = 50;

}  // namespace

NetworkWatcher::NetworkWatcher(std::function<void()> changed)
    : changed_(std::move(changed)), socket_(groups), stop_(eventfd(0, EFD_CLOEXEC)) {
    if (!socket_.isOpen() || stop_ < 0) return;
    thread_ = startThread("networkwatcher", [this] { watch(); });
}

NetworkWatcher::~NetworkWatcher() {
    if (thread_.joinable()) {
        eventfd_write(stop_, 1);
        thread_.join();
    }
    if (stop_ >= 0) close(stop_);
}

void NetworkWatcher::watch() {
    while (wait(-1) == Event::change) {
        for (int pieces = 0; pieces < longestBurst; ++pieces) {
            const auto event = wait(quietMilliseconds);
            if (event == Event::stop) return;
            if (event == Event::quiet) break;
        }
        changed_();
    }
}

NetworkWatcher::Event NetworkWatcher::wait(int timeout) {
    std::array<pollfd, 2> descriptors = {{{stop_, POLLIN, 0}, {socket_.descriptor(), POLLIN, 0}}};
    int ready = 0;
    do {
        ready = poll(descriptors.data(), descriptors.size(), timeout);
    } while (ready < 0 && errno == EINTR);
    if (ready < 0 || descriptors[0].revents != 0) return Event::stop;
    if (ready == 0) return Event::quiet;
    socket_.drain();
    return Event::change;
}

}  // namespace supportsdk
