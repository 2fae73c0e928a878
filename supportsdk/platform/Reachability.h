#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "supportsdk/platform/Queues.h"

struct sockaddr;

namespace supportsdk {

/// What the system knows about the way to an address; a set of these bits.
enum ReachabilityFlags : std::uint32_t {
    reachabilityTransientConnection = 1U << 0,
    reachabilityReachable = 1U << 1,
    reachabilityConnectionRequired = 1U << 2,
    reachabilityConnectionOnTraffic = 1U << 3,
    reachabilityInterventionRequired = 1U << 4,
    reachabilityConnectionOnDemand = 1U << 5,
    reachabilityIsLocalAddress = 1U << 16,
    reachabilityIsDirect = 1U << 17,
    reachabilityIsWWAN = 1U << 18,
};

/// The way to one address.
class ReachabilityRef {
 public:
    virtual ~ReachabilityRef() = default;

    /// The flags now; nothing when they cannot be read. Any thread.
    [[nodiscard]] virtual std::optional<std::uint32_t> flags() = 0;

    /// Sets, or with null clears, what is told of changes. False when changes cannot be watched.
    virtual bool setCallback(std::function<void(std::uint32_t flags)> callback) = 0;

    /// The queue on which the callback runs; null stops it. With callback and queue set, changes
    /// are pushed. False when changes cannot be watched.
    virtual bool setQueue(std::shared_ptr<SerialQueue> queue) = 0;
};

class ReachabilitySource {
 public:
    virtual ~ReachabilitySource() = default;

    /// Null when the name or address cannot be used.
    [[nodiscard]] virtual std::shared_ptr<ReachabilityRef> withHostName(
        const std::string& name) = 0;
    [[nodiscard]] virtual std::shared_ptr<ReachabilityRef> withAddress(const sockaddr& address) = 0;
};

}  // namespace supportsdk
