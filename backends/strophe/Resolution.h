#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace supportsdk {

/// Numeric address of a peer.
struct PeerAddress {
    std::string numeric;
    bool loopback = false;
};

/// The look-up of one host name. getaddrinfo() can block for long and cannot be stopped, so it runs
/// on a thread that owns all it touches and is left behind if nobody waits any more.
class Resolution {
 public:
    /// Numeric addresses are answered at once, without a thread.
    explicit Resolution(const std::string& host);
    ~Resolution();
    Resolution(const Resolution&) = delete;
    Resolution& operator=(const Resolution&) = delete;

    /// Becomes readable with the answer.
    [[nodiscard]] int descriptor() const;

    /// In the order to try them in; empty when the name has none, or the answer is not here yet.
    [[nodiscard]] std::vector<PeerAddress> addresses() const;

 private:
    struct State;
    std::shared_ptr<State> state_;
};

}  // namespace supportsdk
