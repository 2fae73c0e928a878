#include "supportsdk/core/NetworkStatus.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <utility>

#include "supportsdk/core/EventNames.h"
#include "supportsdk/core/NotificationCenter.h"

namespace supportsdk {

namespace {

/// Link-local addresses (RFC 3927): what the local network alone can reach.
constexpr in_addr_t linkLocalNetwork = 0xA9FE0000;

std::shared_ptr<NetworkStatus> withRef(const PlatformPtr& platform,
                                       std::shared_ptr<ReachabilityRef> ref) {
    return ref ? std::make_shared<NetworkStatus>(platform, std::move(ref)) : nullptr;
}

std::shared_ptr<NetworkStatus> withIPv4Address(const PlatformPtr& platform, in_addr_t address) {
    sockaddr_in ip{};
    ip.sin_family = AF_INET;
    ip.sin_addr.s_addr = htonl(address);
    return NetworkStatus::reachabilityWithAddress(platform, reinterpret_cast<sockaddr&>(ip));
}

}  // namespace

std::shared_ptr<NetworkStatus> NetworkStatus::reachabilityWithHostName(
    const PlatformPtr& platform, const std::string& hostName) {
    return withRef(platform, platform->reachability->withHostName(hostName));
}

std::shared_ptr<NetworkStatus> NetworkStatus::reachabilityWithAddress(const PlatformPtr& platform,
                                                                      const sockaddr& address) {
    return withRef(platform, platform->reachability->withAddress(address));
}

std::shared_ptr<NetworkStatus> NetworkStatus::reachabilityForInternetConnection(
    const PlatformPtr& platform) {
    return withIPv4Address(platform, INADDR_ANY);
}

std::shared_ptr<NetworkStatus> NetworkStatus::reachabilityForLocalWiFi(
    const PlatformPtr& platform) {
    auto status = withIPv4Address(platform, linkLocalNetwork);
    if (status) status->localWiFiRef = true;
    return status;
}

NetworkStatus::NetworkStatus(PlatformPtr platform, std::shared_ptr<ReachabilityRef> ref)
    : platform_(std::move(platform)),
      reachabilityRef_(std::move(ref)),
      reachabilitySerialQueue_(
          platform_->backgroundQueue->makeSerialQueue("com.goquorrand.networkstatus")) {}

NetworkStatus::~NetworkStatus() {
    stopNotifier();
}

bool NetworkStatus::startNotifier() {
    if (reachabilityObject_) return true;
    reachabilityObject_ = shared_from_this();
    // Weak, so that a change in flight after stopNotifier() finds nothing to touch.
    const bool watches =
        reachabilityRef_->setCallback([weak = weak_from_this()](std::uint32_t flags) {
            if (const auto self = weak.lock()) self->reachabilityChanged(flags);
        }) &&
        reachabilityRef_->setQueue(reachabilitySerialQueue_);
    if (!watches) stopNotifier();
    return watches;
}

void NetworkStatus::stopNotifier() {
    reachabilityRef_->setCallback(nullptr);
    reachabilityRef_->setQueue(nullptr);
    // Perhaps the last owner of this object: let go of it when nothing is left to do.
    const auto self = std::move(reachabilityObject_);
}

void NetworkStatus::reachabilityChanged(std::uint32_t flags) {
    const auto& block = isReachableWithFlags(flags) ? reachableBlock : unreachableBlock;
    if (block) block(*this);
    if (reachabilityBlock) reachabilityBlock(*this, flags);
    platform_->mainQueue->post([self = shared_from_this()] {
        NotificationCenter::shared().post(notification::networkReachabilityChanged,
                                          std::shared_ptr<void>(self));
    });
}

bool NetworkStatus::isReachableWithFlags(std::uint32_t flags) const {
    const int status = statusForFlags(flags);
    return status == reachableViaWWAN ? reachableOnWWAN : status != notReachable;
}

int NetworkStatus::statusForFlags(std::uint32_t flags) {
    if (!(flags & reachabilityReachable)) return notReachable;
    if (flags & reachabilityIsWWAN) return reachableViaWWAN;
    if (!(flags & reachabilityConnectionRequired)) return reachableViaWiFi;
    const bool connectsByItself =
        (flags & (reachabilityConnectionOnDemand | reachabilityConnectionOnTraffic)) &&
        !(flags & reachabilityInterventionRequired);
    return connectsByItself ? reachableViaWiFi : notReachable;
}

int NetworkStatus::localWiFiStatusForFlags(std::uint32_t flags) {
    constexpr std::uint32_t needed = reachabilityReachable | reachabilityIsDirect;
    return (flags & needed) == needed ? reachableViaWiFi : notReachable;
}

bool NetworkStatus::connectionRequired() const {
    return (reachabilityRef_->flags().value_or(0) & reachabilityConnectionRequired) != 0;
}

int NetworkStatus::currentReachabilityStatus() const {
    const auto flags = reachabilityRef_->flags();
    if (!flags) return notReachable;
    return localWiFiRef ? localWiFiStatusForFlags(*flags) : statusForFlags(*flags);
}

}  // namespace supportsdk
