#include <gmock/gmock.h>

#include "tests/e2e/Road.h"

// Reading: the tree of the knowledge base, its articles, the search, and journeys.

namespace supportsdk::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class Knowledge : public Road {
 protected:
    Knowledge() : Road(shared_) {}

    static void SetUpTestSuite() { shared_ = ServiceProcess::start(); }
    static void TearDownTestSuite() { shared_.reset(); }

    void TearDown() override {
        if (service) service->remove("/faults");
    }

    void strike(const std::string& path, const Json& results) {
        ASSERT_TRUE(service->post("/faults", {{"kind", "answer"},
                                              {"path", "/sdk/v1" + path},
                                              {"content", Json{{"results", results}}.dump()}}));
    }

    /// Takes the row with this label and waits for what becomes of the list.
    Json fold(const Json& rows, const std::string& label) {
        selectLabelled(rows, label);
        return rowsOf(host->await("changed", {{"class", kList}}));
    }

    Json openSearch() {
        openList("Help articles", kList);
        press("Search");
        return awaitScreen(kSearch);
    }

    /// Types, presses the search key and waits until `label` is among the results; gives them.
    Json search(const std::string& text, const std::string& label) {
        host->send({{"do", "type"}, {"text", text}});
        host->send({{"do", "send"}});
        const auto report = host->await(label, [&label](const Json& each) {
            const auto rows = rowsOf(each, 1);
            return indexOf(rows, label) < rows.size();
        });
        return rowsOf(report, 1);
    }

    void searchAndOpen(const std::string& text, const std::string& label) {
        selectLabelled(search(text, label), label, 1);
    }

    static inline std::shared_ptr<ServiceProcess> shared_;
};

TEST_F(Knowledge, FoldersOpenInPlaceAndDeepOnesOnAnotherScreen) {
    load();
    const auto all = openList("Help articles", kList);
    const auto labels = labelsOf(all);
    EXPECT_EQ(labels.front(), "Displays") << "the only root is no row";
    EXPECT_EQ(all[0]["indent"], 40.0);
    EXPECT_THAT(labels, Contains("Spare parts")) << "four levels deep";
    EXPECT_THAT(labels, Contains("Feet and brackets")) << "an article below it";
    EXPECT_THAT(labels, Not(Contains("Discontinued"))) << "a folder below it";

    const auto closed = fold(all, "Lobby 55");
    EXPECT_THAT(labelsOf(closed), Not(Contains("Mounting a display")));
    back(kList);
    EXPECT_EQ(openList("Help articles", kList), closed) << "it is found as it was left";
    EXPECT_EQ(fold(closed, "Lobby 55"), all);

    selectLabelled(all, "Spare parts");
    const auto deeper = awaitScreen(kList);
    EXPECT_EQ(deeper["how"], "pushed");
    EXPECT_EQ(rowsOf(deeper), all);
    // What is folded up there is folded below.
    const auto shorter = fold(all, "Displays");
    back(kList);
    EXPECT_EQ(rowsOf(host->await("changed", {{"class", kList}})), shorter);
}

TEST_F(Knowledge, AnArticleIsShownByItsAddressInTheListAndByItsTextInTheSearch) {
    const auto address = "https://www.example.com/help/mounting";
    load();
    const auto rows = openList("Help articles", kList);
    selectLabelled(rows, "Mounting a display");
    EXPECT_EQ(awaitScreen("KBViewController")["how"], "presented");
    EXPECT_EQ(host->await("web", {{"title", "Mounting a display"}})["url"], address);
    press("Done");
    host->await("left", {{"class", "KBViewController"}});
    selectLabelled(rows, "Cleaning a touch screen");
    EXPECT_THAT(host->await("web").value("html", ""), HasSubstr("dry cloth"));
    back("BaseWebViewController");

    press("Search");
    awaitScreen(kSearch);
    searchAndOpen("mounting DISPLAY", "Mounting a display");
    const auto page = host->await("web", {{"title", "Mounting a display"}});
    EXPECT_THAT(page.value("html", ""), HasSubstr("<h1>Mounting a display</h1>"));
    back("BaseWebViewController");
    // What a search brings may be short: without an address the whole article is fetched.
    strike("/kb/search", Json::array({{{"id", "kb-3"}, {"title", "Dark"}, {"body", "..."}}}));
    searchAndOpen("dark", "Dark");
    EXPECT_THAT(host->await("web", {{"title", "The screen stays dark"}}).value("html", ""),
                HasSubstr("Check that the light"));
}

TEST_F(Knowledge, ASearchThatFoundSomethingIsOfferedAgain) {
    load();
    EXPECT_THAT(rowsOf(openSearch(), 0), IsEmpty());
    search("screen dark", "The screen stays dark");
    search("flicker", "The picture flickers");
    search("screen dark", "The screen stays dark");
    host->send({{"do", "type"}, {"text", "no such – thing?"}});
    host->send({{"do", "send"}});
    host->await("error", {{"text", "No results."}});

    host->send({{"do", "quit"}});
    EXPECT_EQ(host->waitForEnd(), 0);
    host = startHost();
    load();
    EXPECT_THAT(labelsOf(rowsOf(openSearch())), ElementsAre("screen dark", "flicker"));
    select(1);
    EXPECT_EQ(host->await("changed", {{"class", kSearch}})["search"],
              (Json{{"text", "flicker"}, {"cancelShown", false}, {"focused", true}}));
}

TEST_F(Knowledge, JourneysAreListedAndASingleOneOpensAtOnce) {
    load();
    const auto rows = openList("Installations", kJourneys);
    EXPECT_THAT(labelsOf(rows), Contains("New lobby display"));
    selectLabelled(rows, "Network move");
    EXPECT_THAT(host->await("web", {{"title", "Network move"}}).value("url", ""),
                HasSubstr("/journeys/j-2"));
    press("Done");
    host->await("left", {{"class", "JourneyViewController"}});
    back(kJourneys);

    strike("/journeys/data",
           Json::array({{{"title", "Only"}, {"journey_url", "https://www.example.com/only"}}}));
    load();
    choose("Installations");
    host->await("web", {{"title", "Only"}, {"url", "https://www.example.com/only"}});
    press("Done");
    host->await("web", {{"title", "Only"}});  // by coming back to the list
}

}  // namespace
}  // namespace supportsdk::test
