#pragma once

#include <mutex>

namespace supportsdk {

/// Lets another thread cut the socket that libstrophe is busy with, even inside a blocking TLS
/// handshake. It holds a duplicate, so that a cut never hits a descriptor that was closed and given
/// to somebody else meanwhile. Any thread, but for descriptor().
class SocketGuard {
 public:
    SocketGuard() = default;
    ~SocketGuard() { drop(); }
    SocketGuard(const SocketGuard&) = delete;
    SocketGuard& operator=(const SocketGuard&) = delete;

    /// Watches `socket` from now on; false when it was cut already or no descriptor is left.
    bool adopt(int socket);

    /// Lets go of the socket; the connection can only end once this is done.
    void drop();

    /// Ends the connection, or the next one before it begins. For good.
    void cut();

    [[nodiscard]] bool isCut() const;

    /// The duplicate; -1 without one. For the thread that adopts and drops.
    [[nodiscard]] int descriptor() const { return duplicate_; }

 private:
    mutable std::mutex mutex_;
    int duplicate_ = -1;
    bool cut_ = false;
};

}  // namespace supportsdk
