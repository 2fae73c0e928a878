#include <gmock/gmock.h>

#include <algorithm>

#include "tests/e2e/FaultRoad.h"
#include "tests/support/LoopbackHttpServer.h"

// Settings that are legal JSON and absurd, and people in a hurry: what the launcher makes of them.

namespace supportsdk::test {
namespace {

Json withComponents(const Json& components, Json more = Json::object()) {
    more.update({{"version", "2"}, {"components", components}});
    return {{"advancedConfiguration", more}};
}

class LauncherFaults : public FaultRoad {
 protected:
    /// Loads a configuration whose settings the service answers so.
    void loadWith(const Json& settings) {
        strike("answer", "/app/get", {{"content", settings.dump()}});
        load();
    }

    [[nodiscard]] std::size_t chatsSeen() const {
        return static_cast<std::size_t>(
            std::count_if(host->seen.begin(), host->seen.end(), [](const Json& report) {
                return report.value("is", "") == "screen" &&
                       report.value("class", "") == "ChatViewController";
            }));
    }
};

TEST_F(LauncherFaults, SettingsOfferOnlyWhatTheyMakeSenseOf) {
    struct Row {
        const char* what;
        Json settings;
        Json entries;
    };
    const std::vector<Row> rows = {
        {"wrong types everywhere",
         withComponents({{"chat", 7}, {"kb", {{"enabled", "true"}}}, {"website", Json::array()}},
                        {{"menu", "x"},
                         {"menuAppearance", {1}},
                         {"icons", {{"a", Json::object()}, {"kbFolderIcon", "../../etc/passwd"}}},
                         {"colors", {{"textColor", 7}, {"iconColor", "#"}}},
                         {"formAppearance", {{"label", 7}, {"entry", nullptr}}},
                         {"navigationBarAppearance", {{"textColor", {{"x", 1}}}}},
                         {"defaultMember", "nobody"}}),
         Json::array()},
        {"a style and entries that nobody knows",
         withComponents({{"history", {{"enabled", 1}, {"title", "Cases"}}}},
                        {{"menuAppearance", {{"style", "hologram"}, {"heading", 7}}},
                         {"menu", {{"chat", 1}, {"unknown", {{"text", "?"}}}}}}),
         {"Cases"}},
    };
    for (const auto& [what, settings, entries] : rows) {
        SCOPED_TRACE(what);
        loadWith(settings);
        EXPECT_EQ(openMenu()["entries"], entries);
    }
}

TEST_F(LauncherFaults, AButtonPictureThatIsNoneLeavesTheKitsIcon) {
    std::ifstream file(SUPPORTSDK_BINARY_DIR "/resources/star-on.png", std::ios::binary);
    const std::string good{std::istreambuf_iterator<char>(file), {}};
    LoopbackHttpServer pictures;
    pictures.answer("/html", 200, "<html>Please log in</html>", {{"Content-Type", "image/png"}});
    pictures.answer("/missing", 404, good);
    pictures.answer("/good", 200, good);
    host->await("icon");  // the kit's own, from the start
    for (const auto* path : {"/html", "/missing", "/good"}) {
        auto configuration = service->configuration();
        configuration["buttonURL"] = pictures.url(path);
        host->send({{"do", "load"}, {"configuration", configuration}});
        bool hasChanged = false;
        host->await("the end of the load", [&](const Json& report) {
            hasChanged = hasChanged || report.value("is", "") == "icon";
            return report.value("is", "") == "loaded";
        });
        EXPECT_EQ(hasChanged, std::string(path) == "/good") << path;
    }
}

TEST_F(LauncherFaults, TwoTapsAtOnceOpenTwoChatsThatBothEnd) {
    load();
    strike("delay", "/issues/create", {{"milliseconds", 300}, {"times", 2}});
    chooseChat();
    chooseChat();
    const auto isChat = [](const Json& report) {
        return report.value("is", "") == "screen" &&
               report.value("class", "") == "ChatViewController";
    };
    host->await("a chat", isChat);
    host->await("another chat", isChat);
    // The later one is on top, and is the one that was stored.
    host->send({{"do", "defaults"}});
    const auto issue = host->await("defaults")["values"]["supportSDKCurrentIssue"];
    ASSERT_TRUE(service->await("joined", {{"comm_id", issue.value("comm_id", "")}}));
    say("Here I am, and impatient.");
    press("End Chat");
    host->await("left", {{"class", "ChatViewController"}});
    host->send({{"do", "quit"}});
    expectPromptEnd();
}

TEST_F(LauncherFaults, AReloadWhileAChatIsCreatedOpensNoChatOfTheFormerConfiguration) {
    load();
    strike("delay", "/issues/create", {{"milliseconds", 500}});
    chooseChat();
    host->await("progress", {{"text", "Starting Chat"}});
    host->send({{"do", "load"}, {"configuration", service->configuration("meadow-retail")}});
    bool hasSettings = false;
    bool isDismissed = false;
    host->await("the settings and the end of the progress", [&](const Json& report) {
        hasSettings = hasSettings || report.value("operation", "") == "supportButtonDidGetSettings";
        isDismissed = isDismissed || report.value("is", "") == "dismiss";
        return hasSettings && isDismissed;
    });
    EXPECT_EQ(chatsSeen(), 0U);

    // The new configuration is at work as if nothing had been.
    host->send({{"do", "tap"}});
    EXPECT_EQ(host->await("sheet")["heading"], "Store support");
    take("Chat");
    host->await("screen", {{"class", "ChatViewController"}});
}

}  // namespace
}  // namespace supportsdk::test
