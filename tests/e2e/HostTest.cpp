#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>

#include "tests/support/JsonLinesProcess.h"
#include "tests/support/TemporaryFolder.h"

// support-host alone: what it makes of its input, without a service.

namespace supportsdk::test {
namespace {

using testing::HasSubstr;

class HostTest : public testing::Test {
 protected:
    JsonLinesProcess start(std::vector<std::string> more = {}) {
        std::vector<std::string> arguments = {"--data", folder.path / "data"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return {SUPPORTSDK_BINARY_DIR "/hosts/cli/support-host", arguments, folder.path / "errors"};
    }

    TemporaryFolder folder;
};

TEST_F(HostTest, RefusesWhatIsNoCommandAndGoesOn) {
    struct Case {
        std::string line;
        const char* why;
    };
    auto host = start();
    for (const auto& [line, why] : {Case{"", "no JSON object"},
                                    Case{"[1]", "no JSON object"},
                                    Case{"{\"do\":\"tap\"", "no JSON object"},
                                    Case{"\xFF\xFE", "no JSON object"},
                                    Case{std::string(200, '['), "no JSON object"},
                                    Case{"{}", "missing"},
                                    Case{R"({"do":7})", "missing"},
                                    Case{R"({"do":"fly"})", "cannot do"},
                                    Case{R"({"do":"load"})", "no object"},
                                    Case{R"({"do":"choose","label":"x"})", "offered"},
                                    Case{R"({"do":"select","row":-1})", "no row"},
                                    Case{R"({"do":"back"})", "no screen"},
                                    Case{R"({"do":"send"})", "no screen"},
                                    Case{R"({"do":"set","field":"x"})", "missing"},
                                    Case{R"({"do":"set","field":"x","value":1})", "no screen"},
                                    Case{R"({"do":"show"})", "no screen"},
                                    Case{R"({"do":"theme"})", "no configuration"},
                                    Case{R"({"do":"advertise","public":[]})", "no object"},
                                    Case{R"({"do":"tapLine","id":"x"})", "missing"},
                                    Case{R"({"do":"pick","files":["a",1]})", "no list"},
                                    Case{R"({"do":"pick","files":["a"]})", "no pictures"},
                                    Case{R"({"do":"proactive"})", "missing"},
                                    Case{R"({"do":"flush"})", "comes first"},
                                    Case{R"({"do":"pack","sources":[],"target":"x"})", "no list"},
                                    Case{R"({"do":"unpack","archive":"x"})", "no path"},
                                    Case{R"({"do":"cancel"})", "nothing is being"},
                                    Case{R"({"do":"wait"})", "milliseconds"}}) {
        host.sendText(line + "\n");
        EXPECT_THAT(host.await("refused").value("why", ""), HasSubstr(why)) << line;
    }
    host.sendText(std::string(3 << 20, 'x') + "\n");
    EXPECT_THAT(host.await("refused").value("why", ""), HasSubstr("too long"));
    host.send({{"do", "tap"}});
    host.await("delegate", {{"operation", "supportButtonDidFailWithError"}});
}

TEST_F(HostTest, EndsWithItsInputAnOrderOrASignal) {
    auto byOrder = start();
    byOrder.sendText("{\"do\":\"defaults\"}\n{\"do\":\"quit\"}\n{\"do\":\"defaults\"}\n");
    byOrder.await("defaults");
    EXPECT_EQ(byOrder.waitForEnd(), 0);

    auto byEnd = start();
    byEnd.sendText("{\"do\":\"defaults\"}");  // the last line has no end
    byEnd.closeInput();
    byEnd.await("defaults");
    EXPECT_EQ(byEnd.waitForEnd(), 0);

    auto bySignal = start();
    bySignal.send({{"do", "defaults"}});
    bySignal.await("defaults");
    bySignal.send({{"do", "wait"}, {"milliseconds", 600000}});
    bySignal.signal(SIGTERM);
    EXPECT_EQ(bySignal.waitForEnd(), 0);

    EXPECT_EQ(start({"--colour"}).waitForEnd(), 2);
    EXPECT_EQ(start({"--ca"}).waitForEnd(), 2);
    EXPECT_EQ(start({"--log", folder.path / "none/log"}).waitForEnd(), 2);
}

TEST_F(HostTest, WaitsBeforeTheNextCommand) {
    auto host = start();
    host.sendText("{\"do\":\"wait\",\"milliseconds\":300}\n{\"do\":\"defaults\"}\n");
    EXPECT_GE(host.await("defaults").value("at", 0), 300);
}

TEST_F(HostTest, ReadsItsBundleAndReportsASettingsFailure) {
    std::filesystem::create_directory(folder.path / "bundle");
    std::ofstream(folder.path / "bundle/Info.json")
        << R"({"CFBundleIdentifier":"test.host","CFBundleShortVersionString":"1.0"})";
    // Port 9 of this machine: nobody listens there.
    std::ofstream(folder.path / "bundle/support.json")
        << R"({"apiHost":"http://127.0.0.1:9","integrationId":"i","apiKey":"k"})";
    auto host = start({"--bundle", folder.path / "bundle"});
    host.send({{"do", "loadFile"}, {"name", "support"}});
    EXPECT_EQ(host.await("loaded")["result"], false);
    const auto failure =
        host.await("delegate", {{"operation", "supportButtonDidFailToGetSettingsWithError"}});
    EXPECT_EQ(failure["error"]["description"], "Unable to retrieve settings");

    host.send({{"do", "tap"}});
    host.await("info");
    EXPECT_EQ(host.await("menu")["entries"], Json::array());
    host.send({{"do", "defaults"}});
    EXPECT_TRUE(
        host.await("defaults")["values"].contains("com.goquorrand.supportsdk.version_last_app"));
}

TEST_F(HostTest, ShowsTheDevelopersSettings) {
    auto host = start();
    host.send({{"do", "load"}, {"configuration", {{"apiHost", "http://127.0.0.1:9"}}}});
    host.send({{"do", "settings"}});
    const auto screen = host.await("screen", {{"class", "SettingsViewController"}});
    EXPECT_EQ(screen["sections"].size(), 1U);
    for (int tap = 0; tap < 10; ++tap) host.send({{"do", "select"}, {"row", 0}});
    EXPECT_EQ(host.await("changed")["sections"][1]["heading"], "Developer Mode");

    host.send({{"do", "select"}, {"section", 1}, {"row", 2}});
    EXPECT_EQ(host.await("changed")["picker"]["entries"].size(), 6U);
    host.send({{"do", "press"}, {"label", "Integ"}});
    host.send({{"do", "press"}, {"label", "Done"}});
    const auto alert = host.await("alert");
    EXPECT_EQ(alert["fields"], Json({"Enter integration id", "Enter API key"}));
    host.send({{"do", "type"}, {"field", "Enter API key"}, {"text", "k"}});
    host.send({{"do", "choose"}, {"label", "OK"}});
    host.await("error", {{"text", "Both an integration id and api key are required."}});
    host.send({{"do", "back"}});
    host.await("left", {{"class", "SettingsViewController"}});
}

}  // namespace
}  // namespace supportsdk::test
