#include "supportsdk/theme/Appearance.h"
#include "tests/launcher/ButtonFixture.h"

namespace supportsdk::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

const Json on = {{"enabled", true}};
const Json everything = {{"chat", {{"enabled", true}, {"title", "Talk"}}},
                         {"callme", on},
                         {"kb", on},
                         {"website", {{"enabled", true}, {"website", "https://example.test/help"}}},
                         {"email", {{"enabled", true}, {"email", "help@example.test"}}},
                         {"phone", on},
                         {"forms", on},
                         {"history", on},
                         {"journeys", on}};
const Json withPhone = {{"supportPhone", "+1 555 01 23"}};

class SupportButtonMenuTest : public ButtonTest {
 protected:
    void loadStyle(const Json& style, Json more = withPhone) {
        more["menuAppearance"] = {{"style", style}, {"heading", "Help"}, {"textColor", "#010203"}};
        loadWith(everything, more);
    }
    std::vector<std::string> labels() const {
        std::vector<std::string> all;
        for (const auto& entry : button->supportEntries) all.push_back(entry.label);
        return all;
    }
};

TEST_F(SupportButtonMenuTest, RefusesATapWithoutAProviderAndSaysThatAMenuIsEmpty) {
    button->clicked();
    load();
    button->clicked();
    EXPECT_THAT(told(), ElementsAre("failed: Authorization failed | "
                                    "Unable to retrieve provider information.",
                                    "menu"));
    EXPECT_THAT(fakes.progress->shown,
                ElementsAre("info You do not have any components enabled so you will see an empty "
                            "menu."));
    EXPECT_THAT(events(), ElementsAre("com.goquorrand.event.menu.started"));
}

TEST_F(SupportButtonMenuTest, MapsTheThemesStyleToAPopupOrAList) {
    const std::vector<std::tuple<Json, int, std::string>> cases = {
        {"nomenu", 0, "popup"},  {"MENU", 1, "popup"},        {"button", 2, "menu"},
        {"iconlist", 3, "menu"}, {"iconlistexit", 4, "menu"}, {"hologram", 3, "menu"},
        {Json(), 3, "menu"}};
    for (const auto& [style, menuStyle, shown] : cases) {
        loadStyle(style);
        button->clicked();
        EXPECT_EQ(button->menuStyle, menuStyle) << style;
        EXPECT_THAT(told(), ElementsAre(shown)) << style;
    }
    EXPECT_EQ(host->menu->heading, "Help");
}

TEST_F(SupportButtonMenuTest, OffersWhatTheSettingsAndTheDeviceAllow) {
    fakes.kitBundle->files["bubble.png"] = "picture";
    Json more = withPhone;
    more["menu"] = {{"chat", {{"text", "Overruled"}, {"icon", "bubble"}}},
                    {"exit", {{"text", std::string(100'000, 'x')}, {"icon", "missing"}}}};
    loadStyle("iconlistexit", more);
    button->clicked();
    EXPECT_THAT(labels(), Not(Contains("Journeys"))) << "they have not arrived";
    fakes.http->answerTo("/journeys", 200, {{"results", {{{"title", "J"}}}}});
    button->clicked();
    EXPECT_THAT(labels(),
                ElementsAre("Talk", "Call me", "Knowledge base", "Website", "E-mail", "Phone",
                            "Forms", "History", "Journeys", std::string(100'000, 'x')));
    EXPECT_TRUE(button->supportEntries.front().image);
    EXPECT_FALSE(button->supportEntries.back().image);

    fakes.urlOpener->mail = false;
    fakes.urlOpener->telephone = false;
    button->support->identity.membersUsersId = {};
    button->clicked();
    EXPECT_THAT(labels(), AllOf(Contains("Call me"), Not(Contains("Talk")), Not(Contains("E-mail")),
                                Not(Contains("Phone"))));

    loadStyle("menu", Json::object());
    fakes.urlOpener->telephone = true;
    button->support->features.supportWebsiteURL.reset();
    button->clicked();
    EXPECT_THAT(labels(), ElementsAre("Talk", "Call me", "Knowledge base", "Forms", "History"));
}

TEST_F(SupportButtonMenuTest, ClosesThePopupByCancelOrByAnEntry) {
    loadStyle("menu");
    button->clicked();
    ASSERT_EQ(host->sheet.actions.size(), 9U);
    EXPECT_EQ(host->sheet.title + host->sheet.message, "Help");
    EXPECT_EQ(host->sheet.tint, (Color{1, 2, 3}));
    EXPECT_EQ(host->sheet.actions[0].label, "Cancel");
    EXPECT_EQ(host->sheet.actions[0].style, ActionStyle::cancel);
    host->sheet.actions[0].handler({});
    host->sheet.actions[4].handler({});
    EXPECT_THAT(events(),
                ElementsAre("com.goquorrand.event.menu.started", "com.goquorrand.event.menu.ended",
                            "com.goquorrand.event.menu.ended"));
    EXPECT_THAT(fakes.urlOpener->opened, ElementsAre("https://example.test/help"));
}

TEST_F(SupportButtonMenuTest, TakesAFormerMenuAwayAndSurvivesItsUse) {
    struct Picture : SupportMenuView::View {
        void menuShouldDisappear(SupportMenuView&) override { ++removals; }
        void menuAppearanceDidChange(SupportMenuView& menu) override {
            isDark = menu.support->appearance->darkMode();
        }
        int removals = 0;
        bool isDark = false;
    };
    const auto picture = std::make_shared<Picture>();
    loadStyle("iconlist");
    button->clicked();
    const auto former = host->menu;
    former->view = picture;
    fakes.traits->setDark(true);
    EXPECT_TRUE(picture->isDark);
    button->clicked();
    EXPECT_EQ(picture->removals, 1);
    EXPECT_NE(host->menu, former);
    former->select(3);
    former->select(99);
    EXPECT_EQ(picture->removals, 2);
    button.reset();
    former->select(3);  // its button is gone
    EXPECT_THAT(fakes.urlOpener->opened, ElementsAre("https://example.test/help"));
}

TEST_F(SupportButtonMenuTest, SaysWhyAnAddressDoesNotOpen) {
    loadStyle("iconlist");
    fakes.urlOpener->works = false;
    button->actionWeb();
    button->actionEmail();
    button->actionPhone();
    fakes.queue->drain();
    EXPECT_THAT(
        fakes.urlOpener->opened,
        ElementsAre("https://example.test/help", "mailto:help@example.test", "tel://+15550123"));
    EXPECT_THAT(told(), ElementsAre("failed: Unable to open webpage | "
                                    "Device may not have internet access or browser.",
                                    "failed: Unable to send email | "
                                    "Email may not be configured on device.",
                                    "failed: Unable to place phone call | "
                                    "Phone number is incorrect."));
}

}  // namespace
}  // namespace supportsdk::test
