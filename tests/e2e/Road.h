#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <string>

#include "tests/support/JsonLinesProcess.h"
#include "tests/support/ServiceProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk::test {

/// The whole road on real parts: the local service with its chat server, and support-host with a
/// person at it. Everything is fresh, and gone afterwards; but for a service that tests share.
class Road : public testing::Test {
 protected:
    static constexpr char kChat[] = "ChatViewController";
    static constexpr char kList[] = "KBListViewController";
    static constexpr char kSearch[] = "KBSearchViewController";
    static constexpr char kJourneys[] = "JourneysViewController";
    static constexpr char kHistory[] = "HistoryViewController";
    static constexpr char kSwitches[] = "HistoryActionPopupMenu";
    static constexpr char kRating[] = "RatingViewController";
    static constexpr char kCallMe[] = "CallMeViewController";

    explicit Road(std::shared_ptr<ServiceProcess> shared = ServiceProcess::start())
        : service(std::move(shared)) {}

    void SetUp() override {
        ASSERT_TRUE(service);
        host = startHost();
    }

    ~Road() override {
        if (!HasFailure()) return;
        // The program's own words, before the folder goes.
        std::ifstream log(folder.path / "host.log");
        std::cerr << log.rdbuf();
    }

    /// Another start of the application on the same device.
    std::unique_ptr<JsonLinesProcess> startHost() { return startHost({"--ca", service->caFile()}); }
    std::unique_ptr<JsonLinesProcess> startHost(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--data", folder.path / "host"});
        return std::make_unique<JsonLinesProcess>(SUPPORTSDK_BINARY_DIR "/hosts/cli/support-host",
                                                  std::move(arguments), folder.path / "host.log");
    }

    /// From the configuration to a menu that can be tapped.
    void load() { load(service->ready()["customer"]); }
    void load(const Json& customer) {
        host->send(
            {{"do", "load"}, {"configuration", service->configuration()}, {"customer", customer}});
        // In either order: each is the answer to a request of its own.
        bool hasSettings = false;
        bool hasCustomer = false;
        host->await("settings and customer", [&](const Json& report) {
            const auto operation = report.value("operation", "");
            hasSettings = hasSettings || operation == "supportButtonDidGetSettings";
            hasCustomer = hasCustomer || operation == "supportButtonDidGetCustomer";
            return hasSettings && hasCustomer;
        });
    }

    Json openMenu() {
        host->send({{"do", "tap"}});
        return host->await("menu");
    }

    /// From what is open.
    void take(const std::string& label) { host->send({{"do", "choose"}, {"label", label}}); }

    void choose(const std::string& label) {
        openMenu();
        take(label);
    }

    void chooseChat() { choose("Chat with us"); }

    Json awaitScreen(const std::string& screen) {
        return host->await("screen", {{"class", screen}});
    }

    Json openScreen(const std::string& label, const std::string& screen) {
        choose(label);
        return awaitScreen(screen);
    }

    /// The rows of a list, which is opened again while what it lists is still under way.
    Json openList(const std::string& label, const std::string& screen,
                  const std::function<bool(const Json&)>& isWanted) {
        for (int attempt = 0; attempt < 50; ++attempt) {
            const auto rows = rowsOf(openScreen(label, screen));
            if (isWanted(rows)) return rows;
            back(screen);
            host->send({{"do", "wait"}, {"milliseconds", 100}});
        }
        ADD_FAILURE() << label << " never lists what is wanted";
        return Json::array();
    }
    Json openList(const std::string& label, const std::string& screen) {
        return openList(label, screen, [](const Json& rows) { return !rows.empty(); });
    }

    /// Of one section; an empty list where there are none.
    static Json rowsOf(const Json& screen, std::size_t section = 0) {
        const auto sections = screen.value("sections", Json::array());
        if (section >= sections.size()) return Json::array();
        return sections[section].value("rows", Json::array());
    }

    static std::vector<std::string> labelsOf(const Json& rows) {
        std::vector<std::string> labels;
        for (const auto& row : rows) labels.push_back(row.value("label", ""));
        return labels;
    }

    /// Where the row with this label is; their number when there is none.
    static std::size_t indexOf(const Json& rows, const std::string& label) {
        const auto labels = labelsOf(rows);
        return static_cast<std::size_t>(std::find(labels.begin(), labels.end(), label) -
                                        labels.begin());
    }

    void press(const std::string& label) { host->send({{"do", "press"}, {"label", label}}); }

    void select(std::size_t row, std::size_t section = 0) {
        host->send({{"do", "select"}, {"row", row}, {"section", section}});
    }

    void selectLabelled(const Json& rows, const std::string& label, std::size_t section = 0) {
        const auto row = indexOf(rows, label);
        ASSERT_LT(row, rows.size()) << label << " in " << rows;
        select(row, section);
    }

    void back(const std::string& screen) {
        host->send({{"do", "back"}});
        host->await("left", {{"class", screen}});
    }

    /// Taps, chooses chat and waits until the room is joined. Returns the id.
    std::string openChat() {
        chooseChat();
        host->await("screen", {{"class", kChat}});
        host->await("progress", {{"text", "Joining room"}});
        host->await("changed");
        host->send({{"do", "defaults"}});
        return host->await("defaults")["values"].value("supportSDKCurrentIssueId", "");
    }

    void say(const std::string& text) {
        host->send({{"do", "type"}, {"text", text}});
        host->send({{"do", "send"}});
        awaitLine(text, true);
    }

    /// The line of the chat that says `text`, by this person or by the other side.
    Json awaitLine(const std::string& text, bool mine) {
        return awaitLineWith("the line \"" + text + "\"", [&](const Json& line) {
            return line.value("text", "") == text && line["mine"] == mine;
        });
    }

    /// The newest line of the chat that is `wanted`.
    Json awaitLineWith(const std::string& what, const std::function<bool(const Json&)>& wanted) {
        Json found;
        host->await(what, [&](const Json& report) {
            for (const auto& group : report.value("groups", Json::array())) {
                for (const auto& line : group["lines"]) {
                    if (wanted(line)) found = line;
                }
            }
            return !found.is_null();
        });
        return found;
    }

    TemporaryFolder folder;
    std::shared_ptr<ServiceProcess> service;
    std::unique_ptr<JsonLinesProcess> host;
};

}  // namespace supportsdk::test
