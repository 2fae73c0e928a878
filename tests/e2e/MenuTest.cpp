#include <set>

#include "tests/e2e/Road.h"

// The menu: how the theme makes it look, and that each entry leads to a screen on which a person
// gets on.

namespace supportsdk::test {
namespace {

class Menu : public Road {
 protected:
    /// Merges into what the service says of the theme.
    void theme(const Json& patch) {
        ASSERT_TRUE(service->post("/settings", {{"integration", "harbor-lobby"},
                                                {"patch", {{"advancedConfiguration", patch}}}}));
    }

    /// Until all that the settings ask for is in but the history; the forms' last answer ends a
    /// progress that nobody began.
    void load() {
        host->send({{"do", "load"},
                    {"configuration", service->configuration()},
                    {"customer", service->ready()["customer"]}});
        std::set<std::string> missing = {"supportButtonDidGetSettings",
                                         "supportButtonDidGetCustomer", "dismiss"};
        host->await("settings, customer and forms", [&](const Json& report) {
            missing.erase(report.value("operation", report.value("is", "")));
            return missing.empty();
        });
    }
};

TEST_F(Menu, LooksAsTheServiceSaysInLightAndInDark) {
    theme({{"colors", {{"textColor", "#112233"}, {"textColorDark", nullptr}}},
           {"menuAppearance",
            {{"style", "Button"},
             {"heading", "How can we help?"},
             {"textColor", "#102030"},
             {"textColorDark", "#E0E1E2"}}}});
    load();
    const auto light = openMenu();
    EXPECT_EQ(light["heading"], "How can we help?");
    EXPECT_EQ(light["style"], "button");
    EXPECT_EQ(light["entries"].size(), 9U);
    for (const auto& icon : light["icons"]) EXPECT_EQ(icon["icon"], "found") << icon;
    EXPECT_EQ(light["colors"]["text"], "#102030");

    host->send({{"do", "dark"}, {"on", true}});
    const auto dark = host->await("changed", {{"class", "SupportMenuView"}});
    EXPECT_EQ(dark["entries"], light["entries"]);
    EXPECT_EQ(dark["colors"]["text"], "#e0e1e2");
    host->send({{"do", "theme"}});
    EXPECT_EQ(host->await("theme", {{"dark", true}})["colors"]["kbTextColor"], "#112233");
    take("Our website");
    host->await("open", {{"url", "https://www.example.com/help"}, {"worked", true}});
    host->send({{"do", "show"}});
    host->await("refused");
}

TEST_F(Menu, LeadsToEveryChannel) {
    theme({{"menuAppearance", {{"style", "iconlistexit"}}}});
    load();
    struct Way {
        const char* label;
        Json report;
    };
    const auto opens = [](const char* url) { return Json{{"is", "open"}, {"url", url}}; };
    const auto shows = [](const char* screen) { return Json{{"is", "screen"}, {"class", screen}}; };
    for (const auto& [label, report] :
         {Way{"Chat with us", shows("ChatViewController")},
          Way{"Call me back", shows("CallMeViewController")},
          Way{"Help articles", shows("KBListViewController")},
          Way{"Our website", opens("https://www.example.com/help")},
          Way{"Write to us", opens("mailto:help@example.com")},
          Way{"Call us", opens("tel://+15550199")}, Way{"Forms", shows("FormListViewController")},
          Way{"My cases", shows("HistoryViewController")},
          Way{"Installations", shows("JourneysViewController")}}) {
        SCOPED_TRACE(label);
        choose(label);
        host->await(report["is"], report);
        if (report.contains("class")) back(report["class"]);
    }
    openScreen("Help articles", "KBListViewController");
    choose("Exit");
    host->await("delegate", {{"operation", "supportButtonDidRequestExit"}});
    host->await("left", {{"class", "KBListViewController"}});
}

TEST_F(Menu, FormsReachTheService) {
    load();
    openList("Forms", "FormListViewController");
    select(0);
    const auto form = awaitScreen("FormViewController");
    EXPECT_EQ(form["title"], "Feedback");
    EXPECT_EQ(form["saveShown"], true);
    host->send({{"do", "type"}, {"field", "Topics"}, {"text", "lobby"}});
    host->send({{"do", "press"}, {"label", "Save"}});
    host->await("info", {{"text", "Submission successful"}});
    host->await("left", {{"class", "FormViewController"}});
    EXPECT_EQ(service->get("/records/form_log")->at("results").size(), 1U);

    select(2);
    const auto visit = awaitScreen("FormViewController");
    EXPECT_EQ(visit["saveShown"], false);
    host->send({{"do", "set"}, {"field", "Reason"}, {"value", "Other"}});
    const auto other = host->await("changed", {{"class", "FormViewController"}});
    EXPECT_EQ(other["fields"].size(), visit["fields"].size() + 1) << "it asks which one";
    host->send({{"do", "set"}, {"field", "Reason"}, {"value", "Holiday"}});
    host->await("refused");
}

}  // namespace
}  // namespace supportsdk::test
