#include "tests/support/NoLocks.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace {

std::atomic<bool> hasLocks = true;

}  // namespace

/// Stands before that of the C library.
extern "C" int flock(int descriptor, int operation) noexcept {
    if (hasLocks) return static_cast<int>(syscall(SYS_flock, descriptor, operation));
    errno = ENOLCK;
    return -1;
}

namespace supportsdk::test {

NoLocks::NoLocks() {
    hasLocks = false;
}

NoLocks::~NoLocks() {
    hasLocks = true;
}

}  // namespace supportsdk::test
