#include "tests/support/JsonLinesProcess.h"

#include <gtest/gtest.h>

namespace supportsdk::test {
namespace {

bool hasFields(const Json& report, const Json& fields) {
    for (const auto& [key, value] : fields.items()) {
        if (report.value(key, Json()) != value) return false;
    }
    return true;
}

std::vector<std::string> command(const std::filesystem::path& program,
                                 std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), program);
    return arguments;
}

}  // namespace

JsonLinesProcess::JsonLinesProcess(const std::filesystem::path& program,
                                   std::vector<std::string> arguments,
                                   const std::filesystem::path& errors)
    : LineProcess(command(program, std::move(arguments)), errors), name_(program.filename()) {}

void JsonLinesProcess::sendText(const std::string& text) {
    EXPECT_TRUE(write(text)) << name_ << " does not read any more";
}

Json JsonLinesProcess::await(const std::string& what, const Wanted& wanted,
                             std::chrono::milliseconds limit) {
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

Json JsonLinesProcess::await(const std::string& is, const Json& fields) {
    return await(is + " " + fields.dump(), [&](const Json& report) {
        return report.value("is", "") == is && hasFields(report, fields);
    });
}

std::optional<int> JsonLinesProcess::waitForEnd(std::chrono::milliseconds limit) {
    const auto status = LineProcess::waitForEnd(limit);
    if (!status) ADD_FAILURE() << name_ << " does not end";
    return status;
}

}  // namespace supportsdk::test
