#pragma once

#include <memory>
#include <string>

#include "supportsdk/platform/Queues.h"
#include "supportsdk/platform/Reachability.h"

namespace supportsdk {

/// Reachability from the kernel's routes and link states, through rtnetlink. Nothing is sent into
/// the network but look-ups of host names, and nothing is polled: changes are pushed by the kernel.
///
/// Host names are resolved on the background queue, anew with each change of the network; flags()
/// gives nothing until the first look-up has ended, and 0 for a name without an address. Of several
/// addresses the first that is reachable counts. IPv4 and IPv6 addresses can be used.
class NetlinkReachability final : public ReachabilitySource {
 public:
    explicit NetlinkReachability(std::shared_ptr<BackgroundQueue> background)
        : background_(std::move(background)) {}

    [[nodiscard]] std::shared_ptr<ReachabilityRef> withHostName(const std::string& name) override;
    [[nodiscard]] std::shared_ptr<ReachabilityRef> withAddress(const sockaddr& address) override;

 private:
    std::shared_ptr<BackgroundQueue> background_;
};

}  // namespace supportsdk
