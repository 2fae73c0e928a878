#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace supportsdk {

/// At most `maximum` threads that take work from one queue, first come first served.
class WorkerThreads {
 public:
    /// `name` becomes the name of each thread, shortened where the system needs it.
    WorkerThreads(std::string name, std::size_t maximum);
    /// Drops what waits, and waits for what runs, except when it is that work that destroys this.
    ~WorkerThreads();
    WorkerThreads(const WorkerThreads&) = delete;
    WorkerThreads& operator=(const WorkerThreads&) = delete;

    /// Any thread.
    void post(std::function<void()> work);

 private:
    struct Shared;
    // Threads share it: the one that destroys this object goes on for a moment after it.
    std::shared_ptr<Shared> shared_;
};

}  // namespace supportsdk
