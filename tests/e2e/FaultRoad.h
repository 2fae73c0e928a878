#pragma once

#include <set>
#include <string>
#include <vector>

#include "tests/e2e/Road.h"

namespace supportsdk::test {

/// Stands behind a progress text that went without anything in its place.
inline const std::string kGone = "(gone)";

/// What one report lets the person, or the application for them, notice; empty for what stays
/// behind the scenes.
inline std::string sight(const Json& report) {
    const auto is = report.value("is", "");
    if (is == "progress" || is == "error" || is == "info") return report.value("text", "");
    if (is == "alert") return report.value("title", "") + "[" + report.value("message", "") + "]";
    if (is == "left" || is == "dismiss") return is == "left" ? is : kGone;
    if (report.value("operation", "") == "supportButtonDidGetCustomer") return "customer";
    if (!report.contains("error")) return "";
    const auto& error = report["error"];
    const auto reason = error.value("reason", "");
    return error.value("description", "") + (reason.empty() ? "" : ": " + reason);
}

/// Every text under which the person waits on this road.
inline bool isProgress(const std::string& text) {
    static const std::set<std::string> texts = {
        "Starting Chat",   "Retrieving chat information.", "Connecting to chat server",
        "Joining room",    "Checking issue status",        "Resolving issue",
        "Cancelling issue"};
    return texts.contains(text);
}

/// A road whose service, shared by the tests of one program, meets with faults.
class FaultRoad : public Road {
 protected:
    static constexpr std::chrono::seconds promptly{1};

    FaultRoad() : Road(shared_) {}

    static void SetUpTestSuite() { shared_ = ServiceProcess::start(); }
    static void TearDownTestSuite() { shared_.reset(); }

    void TearDown() override {
        if (service) service->remove("/faults");
    }

    /// Strikes the next request whose path begins so.
    void strike(const std::string& kind, const std::string& path, Json more = Json::object()) {
        more.update({{"kind", kind}, {"path", "/sdk/v1" + path + "*"}});
        ASSERT_TRUE(service->post("/faults", more));
    }

    /// Waits until the person has seen exactly `wanted`, in that order and nothing else, since
    /// `mark`; and proves with a further command that the program is not kept busy.
    void expectSights(const std::vector<std::string>& wanted) {
        std::vector<std::string> seen;
        for (auto at = from_; at < host->seen.size(); ++at) add(seen, host->seen[at]);
        if (seen != wanted) {
            host->await("what the person is to see", [&](const Json& report) {
                add(seen, report);
                return seen == wanted;
            });
        }
        host->send({{"do", "defaults"}});
        host->await("an answer", [&](const Json& report) {
            add(seen, report);
            return report.value("is", "") == "defaults";
        });
        EXPECT_EQ(seen, wanted);
        mark();
    }

    /// What follows is new to the person.
    void mark() { from_ = host->seen.size(); }

    [[nodiscard]] bool keepsItsIssue() const {
        return host->seen.back()["values"].contains("supportSDKCurrentIssueId");
    }

    void expectPromptEnd() { EXPECT_EQ(host->waitForEnd(promptly), 0); }

 private:
    static void add(std::vector<std::string>& seen, const Json& report) {
        auto text = sight(report);
        if (text.empty()) return;
        if (!seen.empty() && seen.back() == kGone) seen.pop_back();
        const bool endsNothing = seen.empty() || !isProgress(seen.back());
        if (text != kGone || !endsNothing) seen.push_back(std::move(text));
    }

    static inline std::shared_ptr<ServiceProcess> shared_;
    std::size_t from_ = 0;
};

}  // namespace supportsdk::test
