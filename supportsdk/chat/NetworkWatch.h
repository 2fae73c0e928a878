#pragma once

#include <functional>
#include <memory>

#include "supportsdk/platform/Platform.h"

namespace supportsdk {

/// Tells when the way to the Internet is there again, or has become one of another kind (another
/// route of the same kind is not told). Sleeps between changes.
/// Main thread; `changed` comes there too, and not after this object is destroyed.
class NetworkWatch {
 public:
    NetworkWatch(const Platform& platform, std::function<void()> changed);
    ~NetworkWatch();
    NetworkWatch(const NetworkWatch&) = delete;
    NetworkWatch& operator=(const NetworkWatch&) = delete;

 private:
    const std::shared_ptr<std::function<void()>> changed_;
    /// Null when the system gives no handle.
    std::shared_ptr<ReachabilityRef> ref_;
};

}  // namespace supportsdk
