#include "backends/strophe/SocketGuard.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace supportsdk {

bool SocketGuard::adopt(int socket) {
    const std::lock_guard lock(mutex_);
    if (cut_) return false;
    if (duplicate_ >= 0) close(duplicate_);
    duplicate_ = fcntl(socket, F_DUPFD_CLOEXEC, 0);
    return duplicate_ >= 0;
}

void SocketGuard::drop() {
    const std::lock_guard lock(mutex_);
    if (duplicate_ >= 0) close(duplicate_);
    duplicate_ = -1;
}

void SocketGuard::cut() {
    const std::lock_guard lock(mutex_);
    cut_ = true;
    if (duplicate_ >= 0) shutdown(duplicate_, SHUT_RDWR);
}

bool SocketGuard::isCut() const {
    const std::lock_guard lock(mutex_);
    return cut_;
}

}  // namespace supportsdk
