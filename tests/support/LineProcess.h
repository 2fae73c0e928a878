#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace supportsdk::test {

/// A program whose output is read line by line. It is killed with this object, and should the test
/// crash.
class LineProcess {
 public:
    static constexpr std::chrono::seconds patience{20};

    /// Starts a program, looked up in PATH. Its errors go to the file `errors`, or where its output
    /// goes.
    explicit LineProcess(std::vector<std::string> arguments,
                         const std::filesystem::path& errors = {});
    ~LineProcess();
    LineProcess(const LineProcess&) = delete;
    LineProcess& operator=(const LineProcess&) = delete;

    /// Nothing at the end of the output, or when none came in time.
    std::optional<std::string> readLine(std::chrono::milliseconds limit = patience);
    /// Passes over lines until one contains `part`; false as above.
    bool awaitLine(const std::string& part);

    /// False when the program does not read any more.
    bool write(std::string_view text) const;
    void closeInput();

    /// -1 once its end has been waited for.
    [[nodiscard]] pid_t processId() const { return pid_; }
    void signal(int number) const;
    /// The exit status, or minus the signal's number; nothing when it still runs after `limit`.
    std::optional<int> waitForEnd(std::chrono::milliseconds limit = patience);

 private:
    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
    std::string buffer_;
    std::size_t taken_ = 0;
    std::size_t searched_ = 0;
};

/// True when the process has ended, or ends within `limit`.
bool processEnds(pid_t pid, std::chrono::milliseconds limit);

}  // namespace supportsdk::test
