#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "supportsdk/platform/Queues.h"

namespace supportsdk::host {

/// Reads lines from a descriptor on a thread of its own and hands them over on the main queue, one
/// at a time: the next one is read once the former was asked for with next(). So a flood of
/// commands waits in the pipe and not in memory.
///
/// The thread also waits for SIGTERM and SIGINT, which must be blocked in the whole process.
class CommandReader {
 public:
    struct Handlers {
        /// A line without its end; nothing when it was longer than maximumLineBytes.
        std::function<void(std::optional<std::string> line)> line;
        /// End of input, or a signal to end; no line comes after it.
        std::function<void()> ended;
    };

    static constexpr std::size_t maximumLineBytes = std::size_t{1} << 20;

    /// Starts the thread; the first line comes after the first next(). Handlers run on the main
    /// thread, and not after the reader is destroyed.
    CommandReader(int descriptor, std::shared_ptr<MainQueue> queue, Handlers handlers);
    ~CommandReader();
    CommandReader(const CommandReader&) = delete;
    CommandReader& operator=(const CommandReader&) = delete;

    void next();

 private:
    struct Shared;
    class Thread;

    std::shared_ptr<Shared> shared_;
    std::thread thread_;
};

}  // namespace supportsdk::host
