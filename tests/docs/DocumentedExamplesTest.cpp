#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "supportsdk/core/Configuration.h"
#include "supportsdk/core/CustomerKeys.h"
#include "supportsdk/core/Deployment.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/Settings.h"
#include "supportsdk/theme/Appearance.h"
#include "tests/support/FakePlatform.h"

// The examples of docs/configuration.md, loaded as a host would: a reader who copies one must get
// what the page says.

namespace supportsdk::test {
namespace {

std::string page() {
    std::ifstream in(SUPPORTSDK_SOURCE_DIR "/docs/configuration.md");
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

/// The blocks of the page that are marked "json KIND", in their order.
std::vector<Json> examples(const std::string& kind) {
    const std::string text = page();
    const std::string fence = "```json " + kind + "\n";
    std::vector<Json> found;
    for (auto at = text.find(fence); at != std::string::npos; at = text.find(fence, at)) {
        at += fence.size();
        const auto end = text.find("```", at);
        const auto json = parseJson(text.substr(at, end - at));
        EXPECT_TRUE(json) << "an example of kind " << kind << " is not JSON";
        if (json) found.push_back(*json);
    }
    return found;
}

/// Every key of `example`, and of what lies in it if `wholly`, stands in backticks in the page's
/// tables or text.
void expectKeysExplained(const Json& example, bool wholly = false) {
    for (const auto& [key, value] : example.items()) {
        if (wholly && value.is_object()) expectKeysExplained(value, wholly);
        if (key.ends_with("Dark")) continue;  // explained for all keys at once
        EXPECT_TRUE(page().find("`" + key) != std::string::npos ||
                    page().find("." + key + "`") != std::string::npos)
            << "nothing explains " << key;
    }
}

TEST(DocumentedExamples, TheConfigurationFillsEveryField) {
    const auto found = examples("configuration");
    ASSERT_EQ(found.size(), 1u);
    FakePlatform fakes;
    fakes.http->readable["https://www.example.com/support-button.png"] = toBytes("a picture");

    const Configuration configuration(found[0], fakes.platform);

    EXPECT_TRUE(configuration.configAPIHost && configuration.configIntegrationId &&
                configuration.configAPIKey && configuration.configPartnerTeam &&
                configuration.configPartnerToken && configuration.configPrivateKey);
    EXPECT_TRUE(configuration.configButtonImage);
    expectKeysExplained(found[0]);
}

TEST(DocumentedExamples, TheCustomerUsesKnownKeys) {
    const auto found = examples("customer");
    ASSERT_EQ(found.size(), 1u);
    for (const auto& [key, value] : found[0].items()) {
        EXPECT_THAT((std::vector<std::string>{kCustomerExternalId, kCustomerLocationExternalId,
                                              kUserEmail, kUserPhone}),
                    testing::Contains(key));
    }
}

TEST(DocumentedExamples, TheDeploymentIsReadWhole) {
    const auto found = examples("deployment");
    ASSERT_EQ(found.size(), 1u);
    FakePlatform fakes;
    fakes.mainBundle->files["deployment.json"] = found[0].dump();

    const auto deployment = Deployment::load(*fakes.platform);

    EXPECT_FALSE(deployment.productionHost.empty() || deployment.legacyDomainSuffix.empty() ||
                 deployment.domainSuffix.empty());
    EXPECT_EQ(deployment.developerServers.size(), 6u);
}

TEST(DocumentedExamples, BothLayoutsSwitchOnTheSameKit) {
    const auto found = examples("settings");
    ASSERT_EQ(found.size(), 2u);
    ASSERT_FALSE(isComponentLayout(found[0]));
    ASSERT_TRUE(isComponentLayout(found[1]));
    const auto& component = dictionaryForKey(found[1], "advancedConfiguration");

    const auto flat = readFlatSettings(found[0], Features(), CallMeTexts());
    const auto components = readComponentSettings(component, Features(), CallMeTexts());

    for (const auto& settings : {flat, components}) {
        const auto& on = settings.features;
        EXPECT_TRUE(on.chatEnabled && on.callmeEnabled && on.kbEnabled && on.websiteEnabled &&
                    on.emailEnabled && on.phoneEnabled && on.historyEnabled);
        EXPECT_FALSE(on.formsEnabled || on.supportUnavailable);
        EXPECT_TRUE(on.supportWebsiteURL && on.supportEmailAddress && on.supportPhoneNumber);
        EXPECT_EQ(on.callMeButtonConfirmation, "We will call within the hour.");
        EXPECT_TRUE(settings.titles.chatTitle && settings.titles.journeysTitle);
        EXPECT_EQ(stringForKey(settings.defaultMember, "memberId"), "m-1");
    }
    EXPECT_TRUE(flat.features.journeysEnabled) << "the flat layout cannot switch journeys off";
    EXPECT_FALSE(components.features.journeysEnabled);
    expectKeysExplained(found[0]);
    expectKeysExplained(component);
}

TEST(DocumentedExamples, TheThemeIsReadWholeAndEachOfItsKeysExplained) {
    const auto found = examples("theme");
    ASSERT_EQ(found.size(), 1u);
    FakePlatform fakes;
    for (const auto* name : {"menu-exit", "kb-folder", "paperclip", "send"})
        fakes.kitBundle->files[std::string(name) + ".png"] = "a picture";
    Appearance theme(fakes.platform);
    theme.configureWithSettings(found[0]);

    EXPECT_TRUE(theme.exitMenuIcon() && theme.kbFolderIcon() && theme.chatSendButtonImage());
    EXPECT_EQ(theme.menuStyle, "iconlist");
    EXPECT_EQ(theme.menuPadding() + theme.menuSpacing() + theme.menuTextSize(), 36.0);
    EXPECT_TRUE(theme.menuBorderColor() && theme.formEntryBorderColor() &&
                theme.formLabelRequiredIndicatorColor() && theme.navigationBarBackgroundColor());
    expectKeysExplained(found[0], true);
}

}  // namespace
}  // namespace supportsdk::test
