#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "supportsdk/platform/Export.h"
#include "supportsdk/platform/Platform.h"

namespace supportsdk {

/// Whether an address can be reached, and a notifier of changes, for hosts. Idle until
/// startNotifier(). Made, started and stopped on the main thread; changes come on a serial queue of
/// its own, so set the blocks before starting.
class SUPPORTSDK_API NetworkStatus : public std::enable_shared_from_this<NetworkStatus> {
 public:
    using Block = std::function<void(NetworkStatus& status)>;
    using FlagsBlock = std::function<void(NetworkStatus& status, std::uint32_t flags)>;

    /// Results of the status operations.
    static constexpr int notReachable = 0;
    static constexpr int reachableViaWiFi = 1;
    static constexpr int reachableViaWWAN = 2;

    // Each is null when the system gives no handle.
    static std::shared_ptr<NetworkStatus> reachabilityWithHostName(const PlatformPtr& platform,
                                                                   const std::string& hostName);
    static std::shared_ptr<NetworkStatus> reachabilityWithAddress(const PlatformPtr& platform,
                                                                  const sockaddr& address);
    static std::shared_ptr<NetworkStatus> reachabilityForInternetConnection(
        const PlatformPtr& platform);
    static std::shared_ptr<NetworkStatus> reachabilityForLocalWiFi(const PlatformPtr& platform);

    /// With a handle of one's own, which must not be null. Only for std::make_shared.
    NetworkStatus(PlatformPtr platform, std::shared_ptr<ReachabilityRef> ref);
    ~NetworkStatus();
    NetworkStatus(const NetworkStatus&) = delete;
    NetworkStatus& operator=(const NetworkStatus&) = delete;

    /// Watches for changes and keeps this object alive until stopNotifier(). True as well when it
    /// was watching already; false when changes cannot be watched.
    bool startNotifier();
    void stopNotifier();

    /// Calls reachableBlock or unreachableBlock, then reachabilityBlock, and posts
    /// "kNetworkReachabilityChangedNotification" on the main queue. Runs on the serial queue.
    void reachabilityChanged(std::uint32_t flags);

    /// Any status but notReachable; cellular only counts while reachableOnWWAN is set.
    [[nodiscard]] bool isReachableWithFlags(std::uint32_t flags) const;
    [[nodiscard]] static int statusForFlags(std::uint32_t flags);
    [[nodiscard]] static int localWiFiStatusForFlags(std::uint32_t flags);
    /// Whether a connection would have to be made first; false when the flags cannot be read.
    [[nodiscard]] bool connectionRequired() const;
    /// notReachable when the flags cannot be read.
    [[nodiscard]] int currentReachabilityStatus() const;

    /// For another source of changes; neither does anything.
    void handlePathUpdate() {}
    [[nodiscard]] bool isConnected() const { return false; }

    bool localWiFiRef = false;
    bool reachableOnWWAN = true;
    Block reachableBlock;
    Block unreachableBlock;
    FlagsBlock reachabilityBlock;

 private:
    PlatformPtr platform_;
    std::shared_ptr<ReachabilityRef> reachabilityRef_;
    std::shared_ptr<SerialQueue> reachabilitySerialQueue_;
    /// This object itself, while the notifier runs.
    std::shared_ptr<NetworkStatus> reachabilityObject_;
};

}  // namespace supportsdk
