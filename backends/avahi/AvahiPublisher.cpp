#include "backends/avahi/AvahiPublisher.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <chrono>

#include "backends/posix/Threads.h"

namespace supportsdk {

namespace {

/// A daemon that hangs must not keep new services from being told so.
constexpr std::chrono::seconds longestWithdrawal{5};

void waitFor(const Withdrawals& withdrawals) {
    const auto deadline = std::chrono::steady_clock::now() + longestWithdrawal;
    for (const auto& each : withdrawals) each.wait_until(deadline);
}

}  // namespace

/// Readable once it is asked for. Thread and publisher share it: either may be the last.
class AvahiPublisher::Stop {
 public:
    Stop() = default;
    ~Stop() {
        if (descriptor >= 0) close(descriptor);
    }
    Stop(const Stop&) = delete;
    Stop& operator=(const Stop&) = delete;

    void ask() const { eventfd_write(descriptor, 1); }

    const int descriptor = eventfd(0, EFD_CLOEXEC);
};

AvahiPublisher::AvahiPublisher(std::shared_ptr<Stop> stop, std::shared_ptr<Withdrawals> withdrawals)
    : stop_(std::move(stop)), withdrawals_(std::move(withdrawals)) {}

AvahiPublisher::~AvahiPublisher() {
    stop_->ask();
    withdrawals_->push_back(std::move(withdrawn_));
}

std::unique_ptr<AvahiPublisher> AvahiPublisher::start(ServiceRecord record,
                                                      AvahiPublication::Report report,
                                                      std::shared_ptr<Withdrawals> withdrawals) {
    auto stop = std::make_shared<Stop>();
    if (stop->descriptor < 0) return nullptr;
    std::erase_if(*withdrawals, [](const auto& each) {
        return each.wait_for(std::chrono::seconds{0}) == std::future_status::ready;
    });
    std::unique_ptr<AvahiPublisher> publisher(
        new AvahiPublisher(std::move(stop), std::move(withdrawals)));
    return publisher->run(std::move(record), std::move(report)) ? std::move(publisher) : nullptr;
}

bool AvahiPublisher::run(ServiceRecord record, AvahiPublication::Report report) {
    std::promise<void> withdrawn;
    withdrawn_ = withdrawn.get_future().share();
    auto thread = startThread(
        "support-mdns", [stop = stop_, before = *withdrawals_, record = std::move(record),
                         report = std::move(report), withdrawn = std::move(withdrawn)]() mutable {
            waitFor(before);
            AvahiPublication(std::move(record), std::move(report)).run(stop->descriptor);
            withdrawn.set_value();
        });
    if (!thread.joinable()) return false;
    thread.detach();
    return true;
}

}  // namespace supportsdk
