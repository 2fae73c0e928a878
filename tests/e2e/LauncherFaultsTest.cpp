#include <gmock/gmock.h>

#include <algorithm>

#include "tests/e2e/FaultRoad.h"
#include "tests/support/LoopbackHttpServer.h"

// Settings that are legal JSON and absurd, pictures that are none, and people in a hurry: what the
// launcher makes of them.

namespace supportsdk::test {
namespace {

using testing::Contains;
using testing::SizeIs;

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
    const Json on = true;
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
        {"no components but a list", withComponents({1, 2, 3}), Json::array()},
        {"addresses that are none",
         withComponents({{"website", {{"enabled", on}, {"website", "http://two words/"}}},
                         {"email", {{"enabled", on}, {"email", {"a@b"}}}},
                         {"phone", {{"enabled", on}}}},
                        {{"supportPhone", 112}}),
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

TEST_F(LauncherFaults, TextsOfAnyLengthAndAddressesOfAnyKindComeThrough) {
    const std::string longTitle(100'000, 'W');
    loadWith(withComponents({{"website", {{"enabled", true}, {"title", longTitle}}},
                             {"email", {{"enabled", true}, {"title", "Mail"}}}},
                            {{"menuAppearance", {{"heading", longTitle}}}}));
    EXPECT_EQ(openMenu()["heading"], longTitle);

    loadWith(withComponents(
        {{"website", {{"enabled", true}, {"title", longTitle}, {"website", "javascript:alert(1)"}}},
         {"email", {{"enabled", true}, {"title", "Mail"}, {"email", "a@b\r\nBcc: everybody"}}}}));
    EXPECT_THAT(openMenu()["entries"], Contains("Mail"));
    take("Mail");
    EXPECT_EQ(host->await("delegate",
                          {{"operation", "supportButtonDidFailWithError"}})["error"]["description"],
              "Unable to send email");
}

TEST_F(LauncherFaults, TenMegabytesOfFormsLeaveTheMenuUsable) {
    Json names = Json::array();
    for (int index = 0; index < 500'000; ++index) names.push_back("form-" + std::to_string(index));
    names.push_back(std::string(4'000'000, 'f'));
    const Json form = {{"name", std::string(1'000'000, 'n')},
                       {"fields", Json(20'000, {{"label", Json::array()}, {"type", "x"}})}};
    strike("answer", "/forms/get/", {{"content", Json{{"results", {form, 7}}}.dump()}});
    loadWith(withComponents(
        {{"forms", {{"enabled", true}, {"title", "Forms"}, {"supportForms", names}}}}));
    EXPECT_EQ(openMenu()["entries"], Json({"Forms"}));
    take("Forms");
    host->await("screen");
    host->send({{"do", "quit"}});
    EXPECT_EQ(host->waitForEnd(), 0);
}

TEST_F(LauncherFaults, AButtonPictureThatIsNoneLeavesTheKitsIcon) {
    std::ifstream file(SUPPORTSDK_BINARY_DIR "/resources/star-on.png", std::ios::binary);
    const std::string good{std::istreambuf_iterator<char>(file), {}};
    // A header of 60,000 by 60,000 pixels before a little data.
    auto bomb = good;
    bomb.replace(16, 8, std::string_view("\0\0\xEA\x60\0\0\xEA\x60", 8));
    LoopbackHttpServer pictures;
    pictures.answer("/html", 200, "<html>Please log in</html>", {{"Content-Type", "image/png"}});
    pictures.answer("/bomb", 200, bomb);
    pictures.answer("/huge", 200, good + std::string(20 << 20, '\0'));
    pictures.answer("/missing", 404, good);
    pictures.on("/silence", [](const auto&, LoopbackConnection& peer) { peer.stall(); });
    pictures.answer("/good", 200, good);

    const auto loadIcon = [&](const std::string& path) {
        auto configuration = service->configuration();
        configuration["buttonURL"] = pictures.url(path);
        host->send({{"do", "load"}, {"configuration", configuration}});
        bool iconChanged = false;
        host->await("the end of the load", [&](const Json& report) {
            iconChanged = iconChanged || report.value("is", "") == "icon";
            return report.value("is", "") == "loaded";
        });
        return iconChanged;
    };
    host->await("icon");  // the kit's own, from the start
    for (const auto* path : {"/html", "/bomb", "/huge", "/missing", "/silence"}) {
        EXPECT_FALSE(loadIcon(path)) << path;
    }
    EXPECT_TRUE(loadIcon("/good"));
    openMenu();
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
