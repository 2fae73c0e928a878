#pragma once

#include <future>
#include <memory>
#include <vector>

#include "backends/avahi/AvahiPublication.h"

namespace supportsdk {

/// When the services whose publishers were destroyed will be withdrawn. Main thread.
using Withdrawals = std::vector<std::shared_future<void>>;

/// A publication on a thread of its own. Destroying it withdraws the service without waiting for
/// the thread, which ends when bus and daemon have let go of it: both may hang.
class AvahiPublisher {
 public:
    /// Begins when the `withdrawals` so far are done, or take too long, so that a service that
    /// replaces another one gets its name. `report` runs on that thread, also for a moment after
    /// this is destroyed. Null when the system has no thread left.
    static std::unique_ptr<AvahiPublisher> start(ServiceRecord record,
                                                 AvahiPublication::Report report,
                                                 std::shared_ptr<Withdrawals> withdrawals);
    ~AvahiPublisher();
    AvahiPublisher(const AvahiPublisher&) = delete;
    AvahiPublisher& operator=(const AvahiPublisher&) = delete;

 private:
    class Stop;

    AvahiPublisher(std::shared_ptr<Stop> stop, std::shared_ptr<Withdrawals> withdrawals);
    bool run(ServiceRecord record, AvahiPublication::Report report);

    const std::shared_ptr<Stop> stop_;
    std::shared_future<void> withdrawn_;
    const std::shared_ptr<Withdrawals> withdrawals_;
};

}  // namespace supportsdk
