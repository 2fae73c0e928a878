#include "supportsdk/core/Fields.h"
#include "tests/core/SupportFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

const CallMeTexts texts;

/// Which channels are on, in the order of their switches.
std::string channels(const Features& features) {
    std::string on;
    for (const auto& [enabled, name] :
         std::vector<std::pair<bool, const char*>>{{features.chatEnabled, "chat "},
                                                   {features.callmeEnabled, "callme "},
                                                   {features.kbEnabled, "kb "},
                                                   {features.websiteEnabled, "website "},
                                                   {features.emailEnabled, "email "},
                                                   {features.phoneEnabled, "phone "},
                                                   {features.formsEnabled, "forms "},
                                                   {features.historyEnabled, "history "},
                                                   {features.journeysEnabled, "journeys "}}) {
        if (enabled) on += name;
    }
    return on.substr(0, on.find_last_of(' '));
}

TEST(FlatSettingsTest, eachSwitchStandsForItsChannelButForTwo) {
    const std::vector<std::pair<const char*, const char*>> cases{
        {"supportCallmeEnabled", "chat callme journeys"},
        {"supportChatEnabled", "journeys"},
        {"supportKBEnabled", "kb journeys"},
        {"supportWebsiteEnabled", "website journeys"},
        {"supportEmailEnabled", "email journeys"},
        {"supportPhoneEnabled", "phone journeys"},
        {"supportFormsEnabled", "forms journeys"},
        {"supportHistoryEnabled", "history journeys"},
        {"supportJourneysEnabled", "journeys"}};
    for (const auto& [key, on] : cases) {
        EXPECT_EQ(channels(readFlatSettings({{key, 1}}, {}, texts).features), on) << key;
        EXPECT_EQ(channels(readFlatSettings({{key, "true"}}, {}, texts).features), "journeys");
    }
}

TEST(FlatSettingsTest, textsAddressesAndDefaults) {
    const Json response = {{"callmeMenuTitle", "Call"},
                           {"webTitle", "Web"},
                           {"journeysTitle", 5},
                           {"supportWebsite", "https://w.example"},
                           {"callmeButtonText", ""},
                           {"unavailable", true},
                           {"unavailableSummary", "closed"},
                           {"supportProactiveEnabled", true},
                           {"supportForms", {{{"id", 1}}}},
                           {"defaultMember", {{"memberId", "m"}}},
                           {"advancedConfiguration", {{"menu", 1}}}};
    const auto read = readFlatSettings(response, {}, texts);
    EXPECT_EQ(read.titles.callmeTitle, "Call");
    EXPECT_EQ(read.titles.websiteTitle, "Web");
    EXPECT_EQ(read.titles.journeysTitle, std::nullopt);
    EXPECT_EQ(read.features.supportWebsiteURL, "https://w.example");
    EXPECT_EQ(read.features.callMeButtonText, "");
    EXPECT_EQ(read.features.callMeButtonConfirmation,
              "Thank you. We will contact you as soon as possible.");
    EXPECT_TRUE(read.features.supportUnavailable && read.features.supportProactiveEnabled);
    EXPECT_EQ(read.features.supportUnavailableSummary, "closed");
    EXPECT_THAT(*read.features.supportForms, SizeIs(1));
    EXPECT_EQ(read.defaultMember, Json({{"memberId", "m"}}));
    EXPECT_EQ(read.theme, Json({{"menu", 1}}));

    // Without an address, the one that was parsed last stays; one that does not parse clears it.
    const auto later = readFlatSettings(Json::object(), read.features, texts).features;
    EXPECT_EQ(later.supportWebsite, std::nullopt);
    EXPECT_EQ(later.supportWebsiteURL, "https://w.example");
    EXPECT_EQ(later.supportForms, Json::array());
    EXPECT_EQ(
        readFlatSettings({{"supportWebsite", "no url"}}, later, texts).features.supportWebsiteURL,
        std::nullopt);
}

TEST(ComponentSettingsTest, eachComponentIsReadAndAMissingOneLeavesNothing) {
    const Json advanced = {
        {"components",
         {{"chat", {{"enabled", true}, {"title", "Chat"}}},
          {"callme", {{"enabled", 0}, {"menuTitle", "Call"}, {"title", "no"}, {"buttonText", "B"}}},
          {"website", {{"enabled", true}, {"website", "https://w.example"}}},
          {"email", {{"email", "e@x.example"}}},
          {"phone", {{"enabled", true}, {"supportPhone", "inside"}}},
          {"forms", {{"enabled", true}, {"supportForms", {1, 2}}}},
          {"history", {{"enabled", true}}}}},
        {"unavailable", 1},
        {"defaultMember", {{"memberId", "m"}}}};
    const auto read = readComponentSettings(advanced, {}, texts);
    EXPECT_EQ(channels(read.features), "chat website phone forms history");
    EXPECT_EQ(read.titles.callmeTitle, "Call");
    EXPECT_EQ(read.features.supportPhoneNumber, std::nullopt);
    EXPECT_TRUE(read.features.supportUnavailable && read.features.isV2Settings);
    EXPECT_EQ(read.theme, advanced);

    const auto later = readComponentSettings({{"components", 7}}, read.features, texts).features;
    EXPECT_EQ(channels(later), "");
    EXPECT_EQ(later.callMeButtonText, "Call Me");
    EXPECT_EQ(later.supportWebsite, std::nullopt);
    EXPECT_EQ(later.supportWebsiteURL, std::nullopt);
    EXPECT_EQ(later.supportForms, Json::array());
    EXPECT_FALSE(later.supportUnavailable);
}

TEST(ComponentSettingsTest, onlyTheStringTwoChoosesThisLayout) {
    for (const auto& version : {Json(2), Json("3"), Json("2.0"), Json()}) {
        EXPECT_FALSE(isComponentLayout({{"advancedConfiguration", {{"version", version}}}}));
    }
    EXPECT_TRUE(isComponentLayout({{"advancedConfiguration", {{"version", "2"}}}}));
    EXPECT_FALSE(isComponentLayout({{"version", "2"}}));
}

using GetSettingsTest = SupportTest;

TEST_F(GetSettingsTest, anEmptyAnswerIsEnoughAndIsAskedForOnce) {
    fakes.localizer->texts["Call Me"] = "Rückruf";
    const auto support = startWithSettings();
    EXPECT_THAT(delegate->retrieved, ElementsAre(Json{{"status", 200}}));
    EXPECT_EQ(channels(support->features), "journeys");
    EXPECT_EQ(support->features.callMeButtonText, "Rückruf");
    EXPECT_EQ(support->features.advancedConfiguration, Json::object());
    support->getSettings();
    EXPECT_THAT(fakes.http->sent, SizeIs(1));
}

TEST_F(GetSettingsTest, aFailureSwitchesTheChannelsOffAndLeavesTheRest) {
    const auto support = startWithSettings({{"supportCallmeEnabled", true},
                                            {"supportProactiveEnabled", true},
                                            {"defaultMember", {{"memberId", "m"}}}});
    support->isCloudConfigComplete = false;
    support->getSettings();
    fakes.http->answer(1, 201, Json::object());
    EXPECT_EQ(channels(support->features), "");
    EXPECT_TRUE(support->isProactiveEnabled());
    EXPECT_EQ(support->identity.membersId.text(), "m");
    EXPECT_EQ(delegate->failed.size(), 1U);
    EXPECT_FALSE(support->isCloudConfigComplete);
    support->getSettings();
    EXPECT_THAT(fakes.http->sent, SizeIs(3));
}

TEST_F(GetSettingsTest, twoRequestsInFlightAreBothProcessed) {
    const auto support = start();
    support->getSettings();
    fakes.http->answer(1, 200, {{"supportKBEnabled", true}});
    fakes.http->answer(0, 200,
                       {{"advancedConfiguration",
                         {{"version", "2"}, {"components", {{"email", {{"enabled", 1}}}}}}}});
    EXPECT_EQ(channels(support->features), "email");
    EXPECT_TRUE(support->features.isV2Settings);
    EXPECT_EQ(delegate->retrieved.size(), 2U);
}

TEST_F(GetSettingsTest, aDelegateMayReleaseSupportInsideItsCallback) {
    struct Releasing : SupportDelegate {
        void supportDidRetrieveSettings(const Json&) override { support.reset(); }
        std::shared_ptr<Support> support;
    };
    const auto releasing = std::make_shared<Releasing>();
    releasing->support = Support::create(acme, releasing, fakes.platform);
    fakes.http->answer(0, 200, Json::object());
    EXPECT_FALSE(releasing->support);
}

}  // namespace
}  // namespace supportsdk::test
