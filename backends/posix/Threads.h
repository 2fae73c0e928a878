#pragma once

#include <pthread.h>

#include <csignal>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace supportsdk {

/// Blocks signals for the threads that are started while it lives: they inherit the mask, and the
/// host's signals stay the business of the host's threads. Faults of a thread itself come through.
class BlockedSignals {
 public:
    BlockedSignals() {
        sigset_t all;
        sigfillset(&all);
        for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP})
            sigdelset(&all, fault);
        pthread_sigmask(SIG_SETMASK, &all, &former_);
    }
    ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

 private:
    sigset_t former_{};
};

/// Runs `body` on a thread of the kit's own, with signals blocked. `name`, of at most 15 bytes, is
/// what Linux shows. Not joinable when the system has no thread left; `body` is dropped unrun then.
template <typename Body>
[[nodiscard]] std::thread startThread(std::string name, Body body) {
    const BlockedSignals blocked;
    try {
        return std::thread([name = std::move(name), body = std::move(body)]() mutable {
            pthread_setname_np(pthread_self(), name.c_str());
            body();
        });
    } catch (const std::system_error&) {
        return {};
    }
}

}  // namespace supportsdk
