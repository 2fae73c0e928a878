#pragma once

#include <csignal>

namespace supportsdk::service {

/// SIGTERM and SIGINT as something to wait for. To be made before any thread starts, so that all of
/// them leave these signals to wait(). Also keeps a lost connection from ending the program
/// (SIGPIPE).
class EndSignals {
 public:
    EndSignals() {
        sigemptyset(&signals_);
        sigaddset(&signals_, SIGTERM);
        sigaddset(&signals_, SIGINT);
        sigprocmask(SIG_BLOCK, &signals_, nullptr);
        std::signal(SIGPIPE, SIG_IGN);
    }

    /// Whether wait() would return at once.
    [[nodiscard]] bool hasCome() const {
        sigset_t pending{};
        sigpending(&pending);
        return sigismember(&pending, SIGTERM) == 1 || sigismember(&pending, SIGINT) == 1;
    }

    void wait() const {
        int received = 0;
        sigwait(&signals_, &received);
    }

 private:
    sigset_t signals_{};
};

}  // namespace supportsdk::service
