#pragma once

#include <functional>

#include "supportsdk/platform/Values.h"
#include "tests/support/LineProcess.h"

namespace supportsdk::test {

/// A program that speaks JSON lines on its standard input and output.
class JsonLinesProcess : private LineProcess {
 public:
    using Wanted = std::function<bool(const Json& report)>;

    using LineProcess::closeInput;
    using LineProcess::patience;
    using LineProcess::processId;
    using LineProcess::signal;

    /// Starts `program`; its standard error goes to the file `errors`.
    JsonLinesProcess(const std::filesystem::path& program, std::vector<std::string> arguments,
                     const std::filesystem::path& errors);

    void send(const Json& command) { sendText(command.dump() + "\n"); }
    /// Bytes as they are.
    void sendText(const std::string& text);

    /// The next report that is wanted. Passes over the others and keeps them in `seen`. Fails the
    /// test, and gives an empty object, when it does not come in time.
    Json await(const std::string& what, const Wanted& wanted,
               std::chrono::milliseconds limit = patience);
    /// The next report of that kind with these fields, at least.
    Json await(const std::string& is, const Json& fields = Json::object());

    /// As of LineProcess, but fails the test when it does not end in time.
    std::optional<int> waitForEnd(std::chrono::milliseconds limit = patience);

    /// Every report so far, in order.
    std::vector<Json> seen;

 private:
    std::string name_;
};

}  // namespace supportsdk::test
