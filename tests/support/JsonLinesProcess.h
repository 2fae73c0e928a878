#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "supportsdk/platform/Values.h"

namespace supportsdk::test {

/// A program that speaks JSON lines on its standard input and output. It ends with this object, and
/// with the test should that crash.
class JsonLinesProcess {
 public:
    using Wanted = std::function<bool(const Json& report)>;

    static constexpr std::chrono::seconds patience{20};

    /// Starts `program`; its standard error goes to the file `errors`.
    JsonLinesProcess(const std::filesystem::path& program, std::vector<std::string> arguments,
                     const std::filesystem::path& errors);
    ~JsonLinesProcess();
    JsonLinesProcess(const JsonLinesProcess&) = delete;
    JsonLinesProcess& operator=(const JsonLinesProcess&) = delete;

    void send(const Json& command) { sendText(command.dump() + "\n"); }
    /// Bytes as they are.
    void sendText(const std::string& text);
    void closeInput();

    /// The next report that is wanted. Passes over the others and keeps them in `seen`. Fails the
    /// test, and gives an empty object, when it does not come in time.
    Json await(const std::string& what, const Wanted& wanted,
               std::chrono::milliseconds limit = patience);
    /// The next report of that kind with these fields, at least.
    Json await(const std::string& is, const Json& fields = Json::object());

    [[nodiscard]] pid_t processId() const { return pid_; }
    void signal(int number) const;
    /// Waits for its end: the exit status, or minus the signal's number. Fails the test, and gives
    /// nothing, when it does not end in time.
    std::optional<int> waitForEnd(std::chrono::milliseconds limit = patience);

    /// Every report so far, in order.
    std::vector<Json> seen;

 private:
    std::optional<std::string> readLine(std::chrono::steady_clock::time_point deadline);

    std::string name_;
    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
    std::string buffer_;
    std::size_t taken_ = 0;
    std::size_t searched_ = 0;
};

}  // namespace supportsdk::test
