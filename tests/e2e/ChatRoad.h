#pragma once

#include "tests/e2e/FaultRoad.h"

namespace supportsdk::test {

/// A person in a chat that meets with faults.
class ChatRoad : public FaultRoad {
 protected:
    using Lines = std::vector<std::string>;

    static constexpr char kOffline[] = "You are not connected. Your message has not been sent.";
    static constexpr char kNotSent[] = "Your message has not been sent.";

    /// For what only silence tells: ten seconds until the kit asks the server, ten for its answer.
    static constexpr std::chrono::seconds lossPatience{45};

    /// To the chat server.
    void order(const char* what) { EXPECT_TRUE(service->post("/prosody", {{"do", what}})); }

    Json show() {
        host->send({{"do", "show"}});
        return host->await("screen", {{"class", "ChatViewController"}});
    }

    void awaitOnline(bool wanted, std::chrono::milliseconds limit = JsonLinesProcess::patience) {
        host->send({{"do", "show"}});
        host->await(
            wanted ? "the room" : "the loss of the room",
            [&](const Json& report) { return report.value("online", Json()) == wanted; }, limit);
    }

    static Lines linesOf(const Json& screen) {
        Lines lines;
        for (const auto& group : screen.value("groups", Json::array()))
            for (const auto& line : group["lines"]) lines.push_back(line.value("text", ""));
        return lines;
    }

    /// No line missing, none doubled, all in order.
    void expectLines(const Lines& wanted) {
        if (linesOf(show()) == wanted) return;
        host->await("these lines: " + Json(wanted).dump(),
                    [&](const Json& report) { return linesOf(report) == wanted; });
        EXPECT_EQ(linesOf(show()), wanted);
    }

    void sendText(const std::string& text) {
        host->send({{"do", "type"}, {"text", text}});
        host->send({{"do", "send"}});
    }

    /// What the person says does not go, is told so, and stays in the entry bar.
    void expectRefusal(const std::string& text, const std::string& words) {
        sendText(text);
        host->await("error", {{"text", words}});
        EXPECT_EQ(show()["entry"]["text"], text);
    }
};

}  // namespace supportsdk::test
