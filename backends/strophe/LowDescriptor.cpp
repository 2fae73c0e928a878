#include "backends/strophe/LowDescriptor.h"

#include <fcntl.h>
#include <unistd.h>

namespace supportsdk {

namespace {

// The lowest number that is free, opened; -1 when it is not low enough.
int openLow() {
    const int descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (descriptor < LowDescriptor::limit) return descriptor;
    close(descriptor);
    return -1;
}

}  // namespace

LowDescriptor::~LowDescriptor() {
    if (held_ >= 0) close(held_);
}

void LowDescriptor::reserve() {
    const std::lock_guard lock(mutex_);
    if (held_ < 0) held_ = openLow();
}

bool LowDescriptor::release() {
    const std::lock_guard lock(mutex_);
    const int descriptor = held_ >= 0 ? held_ : openLow();
    held_ = -1;
    return descriptor >= 0 && close(descriptor) == 0;
}

}  // namespace supportsdk
