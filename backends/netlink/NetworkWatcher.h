#pragma once

#include <functional>
#include <thread>

#include "backends/netlink/NetlinkSocket.h"

namespace supportsdk {

/// Tells when links, addresses or routes change, on a thread of its own that sleeps in between. It
/// belongs to the network namespace of the thread that made it. Destroying it waits for `changed`
/// to return; not to be destroyed by `changed`.
class NetworkWatcher {
 public:
    /// `changed` runs on the watcher's thread, once for changes that come in one burst.
    explicit NetworkWatcher(std::function<void()> changed);
    ~NetworkWatcher();
    NetworkWatcher(const NetworkWatcher&) = delete;
    NetworkWatcher& operator=(const NetworkWatcher&) = delete;

    /// False when changes cannot be watched.
    [[nodiscard]] bool isWatching() const { return thread_.joinable(); }

 private:
    void watch();
    /// Waits for a change, at most `timeout` milliseconds (-1: forever).
    enum class Event { change, quiet, stop };
    Event wait(int timeout);

    std::function<void()> changed_;
    NetlinkSocket socket_;
    int stop_ = -1;
    std::thread thread_;
};

}  // namespace supportsdk
