#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace supportsdk::test {

/// A program whose output, errors included, is read line by line. It is killed with this object,
/// and should the test crash.
class LineProcess {
 public:
    static constexpr std::chrono::seconds patience{20};

    explicit LineProcess(std::vector<std::string> arguments);
    ~LineProcess();
    LineProcess(const LineProcess&) = delete;
    LineProcess& operator=(const LineProcess&) = delete;

    /// Nothing at the end of the output, or when none came in time.
    std::optional<std::string> readLine(std::chrono::milliseconds limit = patience);
    /// Passes over lines until one contains `part`; false as above.
    bool awaitLine(const std::string& part);
    /// Reads to the end of the output: the exit status, or -1.
    int waitForEnd();

 private:
    pid_t pid_ = -1;
    int output_ = -1;
    std::string buffer_;
};

}  // namespace supportsdk::test
