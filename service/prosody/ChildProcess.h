#pragma once

#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace supportsdk::service {

/// A program run as a child. It gets SIGKILL when this process ends, however that comes about, and
/// inherits no descriptors but its standard ones. Any thread.
class ChildProcess {
 public:
    struct Options {
        /// The program, looked up in PATH, and its arguments.
        std::vector<std::string> arguments;
        /// Gets standard output and standard error, appended.
        std::filesystem::path outputFile;
    };

    /// Null when the program could not be started.
    static std::unique_ptr<ChildProcess> start(const Options& options);

    /// Kills the child and waits for it.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    [[nodiscard]] pid_t processId() const { return pid_; }
    [[nodiscard]] bool isRunning() const;

    /// Does nothing once the child has ended.
    void signal(int number);

    /// Waits until the child has ended; false when it has not within `limit`.
    bool waitForEnd(std::chrono::milliseconds limit);

 private:
    ChildProcess() = default;
    void run(const Options& options);

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    bool launched_ = false;
    bool ended_ = false;
    pid_t pid_ = -1;
    std::thread parent_;
};

}  // namespace supportsdk::service
