#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "supportsdk/platform/Queues.h"
#include "supportsdk/platform/Stanza.h"

namespace supportsdk {

/// Finds out whether anybody is still there: pings the account's server (XEP-0199) at an interval,
/// and tells when no answer, not even an error, comes in time. Main thread.
class XmppAutoPing {
 public:
    struct Callbacks {
        std::function<void(std::string xml)> send;
        /// No answer came. Pinging has stopped. May destroy this object.
        std::function<void()> timedOut;
    };

    XmppAutoPing(std::shared_ptr<MainQueue> queue, Callbacks callbacks);

    void setPingInterval(std::chrono::milliseconds interval) { interval_ = interval; }
    void setPingTimeout(std::chrono::milliseconds timeout) { timeout_ = timeout; }

    /// Sends the first ping one interval from now.
    void start();
    void stop();
    /// Pings now, unless an answer is waited for. The interval goes on as it was.
    void pingNow();

    /// True when `stanza` was the answer that is waited for.
    bool receive(const Stanza& stanza);

 private:
    const std::shared_ptr<MainQueue> queue_;
    const Callbacks callbacks_;
    std::chrono::milliseconds interval_{0};
    std::chrono::milliseconds timeout_{0};
    std::string pendingId_;
    Registration nextPing_;
    Registration deadline_;
};

}  // namespace supportsdk
