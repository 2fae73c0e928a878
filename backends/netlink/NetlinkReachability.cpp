#include "backends/netlink/NetlinkReachability.h"

#include <sys/socket.h>

#include <cstring>

#include "backends/netlink/NetworkWatcher.h"
#include "backends/netlink/ReachabilityTarget.h"

namespace supportsdk {

namespace {

constexpr std::size_t longestHostName = 253;  // RFC 1035, 2.3.4, without the last point

/// Decides what the callback hears. Shared with the watcher's thread and look-ups under way.
class Reporter : public std::enable_shared_from_this<Reporter> {
 public:
    explicit Reporter(std::shared_ptr<ReachabilityTarget> target) : target_(std::move(target)) {}

    void setCallback(std::function<void(std::uint32_t)> callback) {
        // The former one is freed outside the lock, and so is the queue: it waits for its work,
        // which may be at this lock.
        const std::lock_guard lock(mutex_);
        callback_.swap(callback);
    }
    void setQueue(std::shared_ptr<SerialQueue> queue) {
        const std::lock_guard lock(mutex_);
        queue_.swap(queue);
    }
    [[nodiscard]] bool isComplete() {
        const std::lock_guard lock(mutex_);
        return callback_ && queue_;
    }

    /// Takes the flags now as known to the callback.
    void begin() {
        const std::lock_guard turn(checking_);
        known_ = target_->flags();
    }

    void check() {
        // One at a time, so that an older answer never follows a newer one.
        const std::lock_guard turn(checking_);
        const auto flags = target_->flags();
        if (!flags || flags == known_) return;
        known_ = flags;
        std::shared_ptr<SerialQueue> queue;
        {
            const std::lock_guard lock(mutex_);
            queue = queue_;
        }
        if (!queue) return;
        queue->post([self = weak_from_this(), value = *flags] {
            if (const auto reporter = self.lock()) reporter->report(value);
        });
    }

 private:
    void report(std::uint32_t flags) {
        std::unique_lock lock(mutex_);
        // Cleared in the meantime: nobody wants to hear it any more.
        if (!queue_ || !callback_) return;
        const auto callback = callback_;
        lock.unlock();
        callback(flags);
    }

    const std::shared_ptr<ReachabilityTarget> target_;
    std::mutex checking_;
    std::optional<std::uint32_t> known_;

    std::mutex mutex_;
    std::function<void(std::uint32_t)> callback_;
    std::shared_ptr<SerialQueue> queue_;
};

class NetlinkReachabilityRef final : public ReachabilityRef {
 public:
    explicit NetlinkReachabilityRef(std::shared_ptr<ReachabilityTarget> target)
        : target_(std::move(target)), reporter_(std::make_shared<Reporter>(target_)) {
        target_->lookUp();
    }
    ~NetlinkReachabilityRef() override { stop(); }
    NetlinkReachabilityRef(const NetlinkReachabilityRef&) = delete;
    NetlinkReachabilityRef& operator=(const NetlinkReachabilityRef&) = delete;

    [[nodiscard]] std::optional<std::uint32_t> flags() override { return target_->flags(); }

    bool setCallback(std::function<void(std::uint32_t flags)> callback) override {
        const std::lock_guard lock(control_);
        reporter_->setCallback(std::move(callback));
        return update();
    }
    bool setQueue(std::shared_ptr<SerialQueue> queue) override {
        const std::lock_guard lock(control_);
        reporter_->setQueue(std::move(queue));
        return update();
    }

 private:
    bool update() {
        if (!reporter_->isComplete()) {
            stop();
            return true;
        }
        return watcher_ || start();
    }

    bool start() {
        // Watching comes before the first look, so that no change falls between the two.
        auto watcher = std::make_unique<NetworkWatcher>([target = target_, reporter = reporter_] {
            target->lookUp();
            reporter->check();
        });
        if (!watcher->isWatching()) return false;
        watcher_ = std::move(watcher);
        reporter_->begin();
        target_->setLookedUp([weak = std::weak_ptr(reporter_)] {
            if (const auto reporter = weak.lock()) reporter->check();
        });
        // A look-up may have ended between the two.
        reporter_->check();
        return true;
    }

    void stop() {
        target_->setLookedUp(nullptr);
        watcher_.reset();
    }

    const std::shared_ptr<ReachabilityTarget> target_;
    const std::shared_ptr<Reporter> reporter_;
    std::mutex control_;
    std::unique_ptr<NetworkWatcher> watcher_;
};

}  // namespace

std::shared_ptr<ReachabilityRef> NetlinkReachability::withHostName(const std::string& name) {
    if (name.empty() || name.size() > longestHostName || name.find('\0') != std::string::npos)
        return nullptr;
    return std::make_shared<NetlinkReachabilityRef>(
        std::make_shared<ReachabilityTarget>(name, background_));
}

std::shared_ptr<ReachabilityRef> NetlinkReachability::withAddress(const sockaddr& address) {
    const auto make = [](const IpAddress& ip) {
        return std::make_shared<NetlinkReachabilityRef>(std::make_shared<ReachabilityTarget>(ip));
    };
    if (address.sa_family == AF_INET)
        return make(reinterpret_cast<const sockaddr_in&>(address).sin_addr);
    if (address.sa_family == AF_INET6) return make(reinterpret_cast<const sockaddr_in6&>(address));
    return nullptr;
}

}  // namespace supportsdk
