#include "supportsdk/chat/NetworkWatch.h"

#include <netinet/in.h>

#include <utility>

namespace supportsdk {

NetworkWatch::NetworkWatch(const Platform& platform, std::function<void()> changed)
    : changed_(std::make_shared<std::function<void()>>(std::move(changed))) {
    sockaddr_in anywhere{};
    anywhere.sin_family = AF_INET;
    ref_ = platform.reachability->withAddress(reinterpret_cast<sockaddr&>(anywhere));
    if (!ref_) return;
    ref_->setCallback(
        [weak = std::weak_ptr(changed_), queue = platform.mainQueue](std::uint32_t flags) {
            if (!(flags & reachabilityReachable)) return;
            queue->post([weak] {
                const auto call = weak.lock();
                if (call) (*call)();
            });
        });
    ref_->setQueue(platform.backgroundQueue->makeSerialQueue("com.goquorrand.chat.network"));
}

NetworkWatch::~NetworkWatch() {
    if (!ref_) return;
    ref_->setCallback(nullptr);
    ref_->setQueue(nullptr);
}

}  // namespace supportsdk
