#pragma once

#include <memory>

#include "backends/avahi/AvahiPublisher.h"
#include "supportsdk/platform/NetService.h"
#include "supportsdk/platform/Queues.h"

namespace supportsdk {

/// Services through the system's Avahi daemon, over the system bus: one responder a device is the
/// rule on Linux. Nothing runs and nothing is open before a service is published; each one then has
/// a thread and a connection of its own, until it is dropped.
///
/// The errors' "code" is Avahi's (-26: no daemon), "description" its words. A daemon that starts
/// late, or again, gets the service then. Of a bus that is missing or ends nothing more is heard.
class AvahiNetServiceFactory final : public NetServiceFactory {
 public:
    explicit AvahiNetServiceFactory(std::shared_ptr<MainQueue> mainQueue);

    [[nodiscard]] std::shared_ptr<NetService> makeService(const std::string& domain,
                                                          const std::string& type,
                                                          const std::string& name,
                                                          std::uint16_t port) override;

 private:
    const std::shared_ptr<MainQueue> mainQueue_;
    const std::shared_ptr<Withdrawals> withdrawals_;
};

}  // namespace supportsdk
