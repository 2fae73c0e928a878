#include "supportsdk/core/DefaultsKeys.h"
#include "tests/core/SupportFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

using BootstrapTest = SupportTest;

TEST_F(BootstrapTest, aConfigurationWithoutAnythingStartsAllTheSame) {
    const auto support = start(Json::object());
    EXPECT_FALSE(support->hasProviderId());
    EXPECT_FALSE(support->getHost());
    EXPECT_FALSE(support->isProduction());
    EXPECT_TRUE(start()->isProduction() && !start(other)->isProduction());
    EXPECT_EQ(support->clientAppIdentifier(), "SupportSDK 4.2, iOS 6.1 [(null)]");
    EXPECT_TRUE(start({{"integrationId", ""}})->hasProviderId());
    EXPECT_FALSE(start(Json::array({1}))->hasProviderId());
}

TEST_F(BootstrapTest, aHostUnderTheLegacyDomainIsRewrittenButKeptAsItCame) {
    const auto support = start({{"apiHost", "https://a.old.example:8443"}});
    EXPECT_EQ(support->getHost(), "https://a.now.example:8443");
    EXPECT_EQ(support->config->json()->at("apiHost"), "https://a.old.example:8443");
    EXPECT_EQ(Configuration::redirect("quillpost.quillpost.x", "new"), "new.new.x");
}

TEST_F(BootstrapTest, aDamagedDeploymentOfTheHostIsPassedOverAndLogged) {
    fakes.mainBundle->files["deployment.json"] = "{";
    EXPECT_EQ(Deployment::load(*fakes.platform).productionHost, "https://api.now.example");
    EXPECT_THAT(fakes.log->lines, ElementsAre("deployment.json is damaged"));

    fakes.mainBundle->files["deployment.json"] = R"({"productionHost": "https://own.example"})";
    EXPECT_EQ(Deployment::load(*fakes.platform).productionHost, "https://own.example");

    fakes.mainBundle->files.clear();
    fakes.kitBundle->files.clear();
    EXPECT_EQ(start({{"apiHost", "https://a.old.example"}})->getHost(), "https://a.old.example");
}

TEST_F(BootstrapTest, aDevelopersConfigurationWinsUntilTheApplicationIsUpdated) {
    start();
    Configuration::enableDeveloperMode(*fakes.platform, true);
    stored().setValue(defaultsKey::devModeConfiguration, other);

    auto support = start();
    EXPECT_EQ(support->providerId(), "other");
    EXPECT_EQ(support->config->getDefaultConfiguration(), acme);

    fakes.mainBundle->infos["CFBundleVersion"] = "101";
    support = start();
    EXPECT_EQ(support->providerId(), "acme");
    EXPECT_FALSE(Configuration::isDeveloperMode(*fakes.platform));
}

TEST_F(BootstrapTest, versionsAreTrackedTheWayStoredDataHasThem) {
    EXPECT_TRUE(Support::isNewAppVersion(*fakes.platform));
    EXPECT_FALSE(Support::isNewSDKVersion(*fakes.platform));
    Support::saveVersionInformation(*fakes.platform);
    EXPECT_FALSE(Support::isNewAppVersion(*fakes.platform));
    EXPECT_EQ(stored().string(defaultsKey::buildLastSDK), "100");

    // "New" means the same here.
    fakes.kitBundle->infos = fakes.mainBundle->infos;
    EXPECT_TRUE(Support::isNewSDKVersion(*fakes.platform));
}

TEST_F(BootstrapTest, aConfigurationOnTrialIsKeptOrRolledBack) {
    const auto support = startWithSettings();
    support->reloadWithJSON(std::nullopt);
    EXPECT_EQ(fakes.http->sent.size(), 1U);

    support->configureWithJSON(other);
    EXPECT_TRUE(support->config->isTryingNewConfiguration);
    EXPECT_EQ(fakes.http->request(1).url, "https://other.example/sdk/v1/app/get");
    fakes.http->answer(1, 500, Json::object());
    EXPECT_THAT(fakes.progress->shown,
                ElementsAre("error Unable to retrieve settings for that server."));
    EXPECT_EQ(support->providerId(), "acme");
    EXPECT_TRUE(support->features.journeysEnabled);
    EXPECT_TRUE(delegate->failed.empty());
    EXPECT_FALSE(support->config->getSavedConfiguration());

    support->reloadWithJSON(other);
    fakes.http->answer(2, 200, Json::object());
    EXPECT_FALSE(support->config->isTryingNewConfiguration);
    EXPECT_EQ(support->config->getSavedConfiguration(), other);
    EXPECT_EQ(stored().flushes, 1);

    support->reloadWithJSON(Json{{"integrationId", "third"}});
    fakes.http->answer(3, 404, Json::object());
    EXPECT_EQ(support->providerId(), "other") << "the second trial backs up the first";

    support->restoreDefaultConfiguration();
    EXPECT_EQ(support->providerId(), "acme");
    EXPECT_FALSE(support->config->getSavedConfiguration());
    EXPECT_EQ(fakes.http->request(4).url, "https://api.now.example/sdk/v1/app/get");
}

TEST_F(BootstrapTest, theButtonsImageIsReplacedWithEveryConfiguration) {
    Json withImage = acme;
    withImage["buttonURL"] = "https://img.example/a.png";
    fakes.http->readable["https://img.example/a.png"] = toBytes("picture");
    const auto support = start(withImage);
    EXPECT_TRUE(support->getButtonImage());
    support->reloadWithJSON(other);
    EXPECT_FALSE(support->getButtonImage());

    for (const auto* url : {"not a url", "", "https://x/%zz"}) {
        EXPECT_FALSE(support->config->imageWithUrl(url));
    }
    EXPECT_THAT(fakes.http->reads, ElementsAre("https://img.example/a.png"));
}

TEST_F(BootstrapTest, filesOfTheMainBundleAreFoundByTheFirstTwoPiecesOfTheirName) {
    fakes.mainBundle->files = {{"plain.json", R"({"a": 1})"},
                               {"list.txt", "[1]"},
                               {"bad.json", "{"},
                               {"number.json", "3"}};
    const auto read = [this](const char* name) {
        return Support::jsonFromFile(*fakes.platform, name).value_or(Json());
    };
    EXPECT_EQ(read("plain"), Json({{"a", 1}}));
    EXPECT_EQ(read("list.txt.json"), Json::array({1}));
    for (const auto* name : {"bad", "number", "missing", "plain.", ""})
        EXPECT_EQ(read(name), Json());

    fakes.mainBundle->infos.erase("CFBundleIdentifier");
    EXPECT_EQ(read("plain"), Json());
}

TEST_F(BootstrapTest, theTopScreenLiesBehindPresentationsAndStacks) {
    struct OwnStack : NavigationController {};
    const auto leaf = std::make_shared<ScreenController>();
    const auto stack = std::make_shared<NavigationController>();
    stack->children = {std::make_shared<ScreenController>(), leaf};
    const auto ownStack = std::make_shared<OwnStack>();
    ownStack->children = {std::make_shared<ScreenController>()};
    const auto root = std::make_shared<ScreenController>();

    EXPECT_EQ(Support::topViewController(*fakes.platform), nullptr);
    fakes.presenter->root = stack;
    EXPECT_EQ(Support::topViewController(*fakes.platform), leaf);
    EXPECT_EQ(Support::topViewController(ownStack), ownStack);
    root->presentedController = stack;
    EXPECT_EQ(Support::topViewController(root), leaf);
    leaf->presentedController = ownStack;
    EXPECT_EQ(Support::topViewController(root), ownStack);
    stack->children.clear();
    EXPECT_EQ(Support::topViewController(root), nullptr);
}

}  // namespace
}  // namespace supportsdk::test
