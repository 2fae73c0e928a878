#pragma once

#include <gtest/gtest.h>
#include <httplib.h>

#include <memory>
#include <string>

#include "tests/support/JsonLinesProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk::test {

/// The whole road on real parts: the local service with its chat server, and support-host with a
/// person at it. Everything is fresh, and gone afterwards.
class Road : public testing::Test {
 protected:
    Road() {
        const auto ready = service.await("ready");
        configuration = ready["configuration"];
        customer = ready["customer"];
        authority = ready.value("caFile", "");
        labAddress = ready.value("http", "");
        host = startHost();
    }

    ~Road() override {
        if (!HasFailure()) return;
        // Programs' own words, before the folder goes.
        for (const auto* name : {"host.log", "service.log"}) {
            std::ifstream log(folder.path / name);
            std::cerr << "--- " << name << "\n" << log.rdbuf();
        }
    }

    /// Another start of the application on the same device.
    std::unique_ptr<JsonLinesProcess> startHost() {
        return std::make_unique<JsonLinesProcess>(
            SUPPORTSDK_BINARY_DIR "/hosts/cli/support-host",
            std::vector<std::string>{"--data", folder.path / "host", "--ca", authority},
            folder.path / "host.log");
    }

    /// From the configuration to a menu that can be tapped.
    void load() {
        host->send({{"do", "load"}, {"configuration", configuration}, {"customer", customer}});
        host->await("delegate", {{"operation", "supportButtonDidGetCustomer"}});
    }

    /// Taps, chooses chat and waits until the room is joined. Returns the issue's id.
    std::string openChat() {
        host->send({{"do", "tap"}});
        host->await("menu");
        host->send({{"do", "choose"}, {"label", "Chat with us"}});
        host->await("screen", {{"class", "ChatViewController"}});
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
        Json found;
        host->await("the line \"" + text + "\"", [&](const Json& report) {
            for (const auto& group : report.value("groups", Json::array())) {
                for (const auto& line : group["lines"]) {
                    if (line.value("text", "") == text && line["mine"] == mine) found = line;
                }
            }
            return !found.is_null();
        });
        return found;
    }

    /// What the technician's side does; the answer, or JSON null.
    Json lab(const std::string& path, const Json& body) {
        httplib::Client client(labAddress);
        const auto answer = client.Post("/lab" + path, body.dump(), "application/json");
        EXPECT_TRUE(answer && answer->status == 200) << path << body;
        return answer ? Json::parse(answer->body, nullptr, false) : Json();
    }

    Json labIssue(const std::string& id) {
        httplib::Client client(labAddress);
        const auto answer = client.Get("/lab/issues/" + id);
        return answer ? Json::parse(answer->body, nullptr, false)["results"][0] : Json();
    }

    TemporaryFolder folder;
    JsonLinesProcess service{SUPPORTSDK_BINARY_DIR "/service/support-service",
                             {"--data", folder.path / "service"},
                             folder.path / "service.log"};
    std::unique_ptr<JsonLinesProcess> host;
    Json configuration;
    Json customer;
    std::string authority;
    std::string labAddress;
};

}  // namespace supportsdk::test
