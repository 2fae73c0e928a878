#include "supportsdk/core/SettingsViewController.h"
#include "tests/core/SupportFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct FakeView : SettingsViewController::View {
    void reloadTable() override { log.emplace_back("reload"); }
    void showServerPicker(const std::vector<std::string>& names) override {
        for (const auto& name : names) log.push_back("server " + name);
    }
    void removeServerPicker() override { log.emplace_back("remove"); }
    std::vector<std::string> log;
};

struct FakeScanner : SettingsViewController::BarcodeScanner {
    void scan(ScreenController&, std::function<void(const std::string&)> callback) override {
        found = std::move(callback);
    }
    std::function<void(const std::string&)> found;
};

class SettingsScreenTest : public SupportTest {
 protected:
    enum Row : std::size_t { scan, paste, enter, reset };

    SettingsScreenTest() {
        screen->view = view;
        screen->scanner = scanner;
    }
    void tapVersion(int times) {
        for (int tap = 0; tap < times; ++tap) screen->didSelectRow(0, 0);
    }
    void enterDeveloperMode() {
        tapVersion(10);
        view->log.clear();
    }
    void scanned(const std::string& code) {
        screen->didSelectRow(1, scan);
        scanner->found(code);
        fakes.queue->drain();
    }
    /// What was shown as an error since the last time.
    std::vector<std::string> errors() { return std::exchange(fakes.progress->shown, {}); }

    std::shared_ptr<Support> support = startWithSettings();
    std::shared_ptr<FakeView> view = std::make_shared<FakeView>();
    std::shared_ptr<FakeScanner> scanner = std::make_shared<FakeScanner>();
    std::shared_ptr<SettingsViewController> screen =
        std::make_shared<SettingsViewController>(support);

    const std::string useless = "error That QR code does not provide any usable information.";
    const std::string invalid = "error The JSON configuration is not valid.";
};

TEST_F(SettingsScreenTest, tenTapsSwitchDeveloperModeEachTime) {
    EXPECT_EQ(screen->title, "SDK Settings");
    EXPECT_EQ(screen->textOfRow(0, 0), "SupportSDK Version 4.2 Build 77");
    tapVersion(9);
    screen->didSelectRow(1, reset);
    EXPECT_THAT(view->log, IsEmpty());
    EXPECT_EQ(screen->numberOfSections(), 1U);
    EXPECT_EQ(fakes.http->sent.size(), 1U);

    tapVersion(1);
    EXPECT_THAT(view->log, ElementsAre("reload"));
    EXPECT_EQ(screen->numberOfRows(1), 4U);
    EXPECT_EQ(screen->headerOfSection(1), "Developer Mode");
    EXPECT_TRUE(SettingsViewController(support).developerMode);
    tapVersion(10);
    EXPECT_FALSE(Configuration::isDeveloperMode(*fakes.platform));
}

TEST_F(SettingsScreenTest, pastedJsonIsNotedAndTriedOnLeaving) {
    enterDeveloperMode();
    screen->didSelectRow(1, paste);
    EXPECT_EQ(fakes.presenter->alerts.back().title, "Enter JSON Parameters");
    fakes.presenter->choose("OK", {"{"});
    EXPECT_THAT(
        errors(),
        ElementsAre(invalid, "error That does not appear to be valid JSON. Please try again."));
    screen->viewDidDisappear();
    EXPECT_EQ(fakes.http->sent.size(), 1U);

    screen->didSelectRow(1, paste);
    fakes.presenter->choose("OK", {other.dump()});
    EXPECT_EQ(support->providerId(), "acme");
    screen->viewDidDisappear();
    screen->viewDidDisappear();
    EXPECT_EQ(support->providerId(), "other");
    EXPECT_EQ(fakes.http->sent.size(), 2U);

    screen->didSelectRow(1, reset);
    EXPECT_EQ(support->providerId(), "acme");
}

TEST_F(SettingsScreenTest, parametersAreEnteredForAPickedServer) {
    enterDeveloperMode();
    screen->didSelectRow(1, enter);
    screen->didFinishPicker();
    EXPECT_THAT(view->log, ElementsAre("server Integ", "server UAT", "remove"));
    fakes.presenter->choose("OK", {"id", "key"});
    EXPECT_EQ(screen->updatedJSON->at("apiHost"), "");

    screen->didSelectRow(1, enter);
    screen->didMovePicker("UAT");
    screen->didMovePicker("no such server");
    screen->didFinishPicker();
    fakes.presenter->choose("OK", {"id", ""});
    EXPECT_THAT(errors(), ElementsAre("error Both an integration id and api key are required."));
    screen->didFinishPicker();
    fakes.presenter->choose("OK", {"id", "key"});
    EXPECT_EQ(
        screen->updatedJSON,
        Json({{"apiHost", "https://uat.now.example"}, {"integrationId", "id"}, {"apiKey", "key"}}));
}

TEST_F(SettingsScreenTest, aCodeIsAConfigurationOrWhereOneLies) {
    enterDeveloperMode();
    screen->didSelectRow(1, enter);
    scanned(R"({"integrationId": "scanned"})");
    EXPECT_EQ(view->log.back(), "remove");
    EXPECT_EQ(screen->updatedJSON->at("integrationId"), "scanned");

    fakes.http->readable["https://q.example/c"] = toBytes(R"({"integrationId": "fetched"})");
    fakes.http->readable["https://q.example/bad"] = toBytes("\xff");
    fakes.http->readable["https://q.example/big"] = Bytes(std::size_t{1024} * 1024 + 1);
    scanned("https://q.example/c");
    EXPECT_EQ(screen->updatedJSON->at("integrationId"), "fetched");
    EXPECT_THAT(errors(), IsEmpty());

    scanned("[1]");
    EXPECT_THAT(errors(), ElementsAre(useless));
    scanned("hello");
    EXPECT_THAT(errors(), ElementsAre(invalid, useless));
    scanned("https://q.example/bad");
    EXPECT_THAT(errors(), ElementsAre(invalid, useless));
    scanned("https://q.example/big");
    scanned("https://q.example/missing");
    EXPECT_THAT(errors(), ElementsAre(useless, useless));
    EXPECT_EQ(screen->updatedJSON->at("integrationId"), "fetched");

    screen->didScan("https://q.example/bad");
    screen.reset();
    scanner->found("hello");
    fakes.queue->drain();
    EXPECT_THAT(errors(), IsEmpty()) << "the screen is gone";
}

}  // namespace
}  // namespace supportsdk::test
