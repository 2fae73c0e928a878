#include "backends/system/ThreadBackgroundQueue.h"

#include "backends/system/WorkerThreads.h"

namespace supportsdk {

namespace {

/// A serial queue is the same with one thread.
class ThreadSerialQueue final : public SerialQueue {
 public:
    explicit ThreadSerialQueue(const std::string& label) : threads_(label, 1) {}
    void post(std::function<void()> work) override { threads_.post(std::move(work)); }

 private:
    WorkerThreads threads_;
};

}  // namespace

ThreadBackgroundQueue::ThreadBackgroundQueue()
    : threads_(std::make_unique<WorkerThreads>("supportsdk", maximumThreads)) {}

ThreadBackgroundQueue::~ThreadBackgroundQueue() = default;

void ThreadBackgroundQueue::post(std::function<void()> work) {
    threads_->post(std::move(work));
}

std::shared_ptr<SerialQueue> ThreadBackgroundQueue::makeSerialQueue(const std::string& label) {
    return std::make_shared<ThreadSerialQueue>(label);
}

}  // namespace supportsdk
