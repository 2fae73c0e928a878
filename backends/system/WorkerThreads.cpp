#include "backends/system/WorkerThreads.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#include "backends/posix/Threads.h"

namespace supportsdk {

struct WorkerThreads::Shared {
    Shared(std::string threadName, std::size_t limit)
        : name(std::move(threadName)), maximum(limit) {}

    void serve() {
        std::unique_lock lock(mutex);
        while (true) {
            ++idle;
            wake.wait(lock, [this] { return stopping || !queue.empty(); });
            --idle;
            if (stopping) return;
            auto work = std::move(queue.front());
            queue.pop_front();
            lock.unlock();
            work();
            work = nullptr;
            lock.lock();
        }
    }

    const std::string name;
    const std::size_t maximum;

    std::mutex mutex;
    std::condition_variable wake;
    std::deque<std::function<void()>> queue;
    std::vector<std::thread> threads;
    std::size_t idle = 0;
    bool stopping = false;
};

namespace {

/// Linux shows 15 bytes; of a longer name in reverse-domain style the last piece tells most.
std::string threadName(const std::string& name) {
    constexpr std::size_t longest = 15;
    const auto piece = name.size() > longest ? name.substr(name.rfind('.') + 1) : name;
    return piece.substr(0, longest);
}

}  // namespace

WorkerThreads::WorkerThreads(std::string name, std::size_t maximum)
    : shared_(std::make_shared<Shared>(std::move(name), maximum)) {}

WorkerThreads::~WorkerThreads() {
    std::deque<std::function<void()>> dropped;
    std::vector<std::thread> threads;
    {
        const std::lock_guard lock(shared_->mutex);
        shared_->stopping = true;
        dropped.swap(shared_->queue);
        threads.swap(shared_->threads);
    }
    shared_->wake.notify_all();
    // Before the wait: what runs may hang on something that dropped work holds.
    dropped.clear();
    for (auto& thread : threads) {
        if (thread.get_id() == std::this_thread::get_id()) {
            thread.detach();
        } else {
            thread.join();
        }
    }
}

void WorkerThreads::post(std::function<void()> work) {
    const std::lock_guard lock(shared_->mutex);
    if (shared_->stopping) return;
    shared_->queue.push_back(std::move(work));
    // A thread that was woken but has not run yet still counts as idle, hence the comparison.
    if (shared_->queue.size() > shared_->idle && shared_->threads.size() < shared_->maximum) {
        auto thread =
            startThread(threadName(shared_->name), [shared = shared_] { shared->serve(); });
        // Out of threads, the others, or a later post, do it.
        if (thread.joinable()) shared_->threads.push_back(std::move(thread));
    }
    shared_->wake.notify_one();
}

}  // namespace supportsdk
