#pragma once

#include <csignal>

namespace supportsdk {

/// While it lives, a write that a pipe without a reader or a limit on the size of files refuses is
/// an error for this thread and not the end of the process, whatever the host does with signals.
class WriteSignals {
 public:
    WriteSignals() {
        sigemptyset(&signals_);
        sigaddset(&signals_, SIGPIPE);
        sigaddset(&signals_, SIGXFSZ);
        pthread_sigmask(SIG_BLOCK, &signals_, &former_);
    }
    ~WriteSignals() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }
    WriteSignals(const WriteSignals&) = delete;
    WriteSignals& operator=(const WriteSignals&) = delete;

    /// After a write that failed: takes the signal that it sent. Those that the host holds back
    /// itself stay its own.
    void take() {
        sigset_t pending;
        sigpending(&pending);
        for (const int signal : {SIGPIPE, SIGXFSZ}) {
            if (sigismember(&former_, signal) || !sigismember(&pending, signal)) continue;
            sigset_t one;
            sigemptyset(&one);
            sigaddset(&one, signal);
            int taken = 0;
            sigwait(&one, &taken);
        }
    }

 private:
    sigset_t signals_{};
    sigset_t former_{};
};

}  // namespace supportsdk
