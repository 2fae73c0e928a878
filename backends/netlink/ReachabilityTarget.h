#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "backends/netlink/NetworkTables.h"
#include "supportsdk/platform/Queues.h"

namespace supportsdk {

/// What a reachability reference leads to: an address, or a name whose addresses are looked up in
/// the background. Any thread.
class ReachabilityTarget : public std::enable_shared_from_this<ReachabilityTarget> {
 public:
    explicit ReachabilityTarget(const IpAddress& address) : addresses_({address}) {}
    ReachabilityTarget(std::string name, std::shared_ptr<BackgroundQueue> background)
        : name_(std::move(name)), background_(std::move(background)) {}

    /// Nothing while the name was never looked up, or when the kernel cannot be asked.
    [[nodiscard]] std::optional<std::uint32_t> flags();

    /// Looks the name up anew; one look-up runs at a time. Does nothing for an address.
    void lookUp();

    /// Runs on a background thread after each look-up. Once reset it does not start any more.
    void setLookedUp(std::function<void()> lookedUp);

 private:
    void store(std::vector<IpAddress> addresses);

    const std::string name_;
    const std::shared_ptr<BackgroundQueue> background_;

    std::mutex mutex_;
    std::optional<std::vector<IpAddress>> addresses_;
    std::function<void()> lookedUp_;
    bool lookingUp_ = false;
    bool outdated_ = false;
};

}  // namespace supportsdk
