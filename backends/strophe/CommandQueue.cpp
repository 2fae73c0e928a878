#include "backends/strophe/CommandQueue.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <utility>

namespace supportsdk {

CommandQueue::CommandQueue() : wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

CommandQueue::~CommandQueue() {
    if (wake_ >= 0) close(wake_);
}

void CommandQueue::send(std::string xml) {
    {
        const std::lock_guard lock(mutex_);
        commands_.sends.push_back(std::move(xml));
    }
    wake();
}

void CommandQueue::disconnect() {
    {
        const std::lock_guard lock(mutex_);
        commands_.disconnect = true;
    }
    wake();
}

void CommandQueue::wake() {
    if (wake_ >= 0) eventfd_write(wake_, 1);
}

CommandQueue::Commands CommandQueue::take() {
    eventfd_t ignored = 0;
    if (wake_ >= 0) eventfd_read(wake_, &ignored);
    const std::lock_guard lock(mutex_);
    return std::exchange(commands_, {});
}

}  // namespace supportsdk
