#pragma once

#include <gtest/gtest.h>

#include <algorithm>
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
                     const std::filesystem::path& errors)
        : LineProcess(command(program, std::move(arguments)), errors), name_(program.filename()) {}

    void send(const Json& command) { sendText(command.dump() + "\n"); }
    /// Bytes as they are.
    void sendText(const std::string& text) {
        EXPECT_TRUE(write(text)) << name_ << " does not read any more";
    }

    /// The next report that is wanted. Passes over the others and keeps them in `seen`. Fails the
    /// test, and gives an empty object, when it does not come in time.
    Json await(const std::string& what, const Wanted& wanted,
               std::chrono::milliseconds limit = patience) {
        using Clock = std::chrono::steady_clock;
        const auto deadline = Clock::now() + limit;
        const auto first = seen.size();
        const auto left = [&] {
            return std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        };
        while (const auto line = readLine(left())) {
            auto report = Json::parse(*line, nullptr, false);
            EXPECT_TRUE(report.is_object()) << name_ << " wrote no JSON object: " << *line;
            if (!report.is_object()) continue;
            seen.push_back(report);
            if (wanted(report)) return report;
        }
        std::string meanwhile;
        for (auto i = first; i < seen.size(); ++i) meanwhile += "\n  " + seen[i].dump();
        ADD_FAILURE() << name_ << " never reported: " << what << "; it reported" << meanwhile;
        return Json::object();
    }
    /// The next report of that kind with these fields, at least.
    Json await(const std::string& is, const Json& fields = Json::object()) {
        const auto wanted = fields.items();
        return await(is + " " + fields.dump(), [&](const Json& report) {
            return report.value("is", "") == is &&
                   std::all_of(wanted.begin(), wanted.end(), [&](const auto& field) {
                       return report.value(field.key(), Json()) == field.value();
                   });
        });
    }

    /// As of LineProcess, but fails the test when it does not end in time.
    std::optional<int> waitForEnd(std::chrono::milliseconds limit = patience) {
        const auto status = LineProcess::waitForEnd(limit);
        if (!status) ADD_FAILURE() << name_ << " does not end";
        return status;
    }

    /// Every report so far, in order.
    std::vector<Json> seen;

 private:
    static std::vector<std::string> command(const std::string& program,
                                            std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), program);
        return arguments;
    }

    std::string name_;
};

}  // namespace supportsdk::test
