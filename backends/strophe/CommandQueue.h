#pragma once

#include <mutex>
#include <string>
#include <vector>

namespace supportsdk {

/// What the main thread wants of the stream's thread, and the descriptor that wakes that thread up.
/// Any thread.
class CommandQueue {
 public:
    struct Commands {
        std::vector<std::string> sends;
        /// Close the stream once all is sent.
        bool disconnect = false;
    };

    CommandQueue();
    ~CommandQueue();
    CommandQueue(const CommandQueue&) = delete;
    CommandQueue& operator=(const CommandQueue&) = delete;

    void send(std::string xml);
    void disconnect();
    /// Wakes the stream's thread up without a command.
    void wake();

    /// Readable when there may be something to take; -1 when the process has no descriptor left.
    [[nodiscard]] int descriptor() const { return wake_; }
    [[nodiscard]] Commands take();

 private:
    const int wake_;
    std::mutex mutex_;
    Commands commands_;
};

}  // namespace supportsdk
