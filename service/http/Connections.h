#pragma once

#include <httplib.h>

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace supportsdk::service {

/// A thread for each connection: hosts keep connections open, and a pool would have them block each
/// other.
class ConnectionThreads : public httplib::TaskQueue {
 public:
    void enqueue(std::function<void()> serve) override;
    /// Waits for all of them.
    void shutdown() override;

 private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int running_ = 0;
};

/// Shuts the established connections of this process that were accepted on `localPort`, or just the
/// one from `remotePort`. cpp-httplib does not hand out its sockets, and waits for idle ones when
/// it stops.
void shutConnections(int localPort, int remotePort = 0);

}  // namespace supportsdk::service
