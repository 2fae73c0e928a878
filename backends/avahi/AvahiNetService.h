#pragma once

#include <memory>

#include "backends/avahi/AvahiPublisher.h"
#include "supportsdk/platform/NetService.h"
#include "supportsdk/platform/Queues.h"

namespace supportsdk {

/// One service at the system's Avahi daemon. Main thread.
class AvahiNetService final : public NetService,
                              public std::enable_shared_from_this<AvahiNetService> {
 public:
    AvahiNetService(std::weak_ptr<MainQueue> mainQueue, std::shared_ptr<Withdrawals> withdrawals,
                    ServiceRecord record);

    /// Kept and without effect: Avahi knows no links between devices.
    void setIncludesPeerToPeer(bool includes) override { includesPeerToPeer_ = includes; }
    void setDelegate(std::weak_ptr<NetServiceDelegate> delegate) override;
    bool setTXTRecordData(Bytes data) override;
    void publish() override;

    [[nodiscard]] std::string name() const override { return record_.name; }
    [[nodiscard]] std::string type() const override { return record_.type; }
    [[nodiscard]] std::string domain() const override { return record_.domain; }
    [[nodiscard]] std::uint16_t port() const override { return record_.port; }

 private:
    void take(const PublishOutcome& outcome);

    const std::weak_ptr<MainQueue> mainQueue_;
    const std::shared_ptr<Withdrawals> withdrawals_;
    ServiceRecord record_;
    bool includesPeerToPeer_ = false;
    bool published_ = false;
    std::weak_ptr<NetServiceDelegate> delegate_;
    std::unique_ptr<AvahiPublisher> publisher_;
};

}  // namespace supportsdk
