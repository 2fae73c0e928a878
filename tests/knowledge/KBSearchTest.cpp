#include "supportsdk/core/DefaultsKeys.h"
#include "supportsdk/knowledge/KBListViewController.h"
#include "supportsdk/knowledge/KBSearchViewController.h"
#include "supportsdk/knowledge/KBViewController.h"
#include "tests/core/SupportFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class KBSearchTest : public SupportTest {
 protected:
    static constexpr auto recent = KBSearchViewController::recent;
    static constexpr auto top = KBSearchViewController::top;

    void open() {
        screen->viewDidLoad();
        screen->viewWillAppear();
    }
    void searchFor(const std::string& text) {
        screen->searchBarTextDidChange(text);
        screen->searchBarSearchButtonClicked();
    }
    void answer(const std::string& text, int status, const Json& results) {
        fakes.http->answerTo("/kb/search?query=" + text, status, {{"results", results}});
    }
    /// What the search finds, in one go.
    void find(const Json& results) {
        searchFor("x");
        answer("x", 200, results);
    }
    std::vector<std::string> texts(std::size_t section) const {
        std::vector<std::string> all;
        for (std::size_t row = 0; row < screen->numberOfRows(section); ++row)
            all.push_back(screen->textOfRow(section, row));
        return all;
    }
    std::size_t opened() const {
        return fakes.presenter->pushed.size() + fakes.presenter->presented.size();
    }

    std::shared_ptr<Support> support = startWithSettings();
    std::shared_ptr<KBSearchViewController> screen = KBSearchViewController::create(support, {});
    const Json found = Json::array({{{"title", "Found"}, {"id", "7"}}});
};

TEST_F(KBSearchTest, TheLatestSearchIsShownAndRecordedAsItWasAsked) {
    const auto list = KBListViewController::create(support, {});
    list->viewDidLoad();
    list->rightBarButtons.front().action();
    screen = std::dynamic_pointer_cast<KBSearchViewController>(fakes.presenter->pushed.back());
    open();
    searchFor("first");
    searchFor("dark \"screen\" 100%");
    EXPECT_FALSE(screen->isCancelButtonShown);
    screen->searchBarTextDidChange("typed meanwhile");
    answer("dark \"screen\" 100%", 200, found);
    answer("first", 500, {});
    EXPECT_THAT(texts(top), ElementsAre("Found"));
    EXPECT_THAT(screen->recentSearches, ElementsAre("dark \"screen\" 100%"));
    EXPECT_EQ(stored().values.at(defaultsKey::recentSearches), Json(screen->recentSearches));
    EXPECT_EQ(stored().flushes, 1);
    EXPECT_THAT(fakes.progress->shown, IsEmpty());
    EXPECT_EQ(screen->headingOfSection(recent) + screen->headingOfSection(top), "TOP RESULTS");
    EXPECT_THAT(texts(recent), IsEmpty());

    // What found nothing is not recorded, and what was given up is not heard of.
    searchFor("nothing");
    answer("nothing", 200, Json::array());
    EXPECT_THAT(fakes.progress->shown, ElementsAre("error No results."));
    searchFor("given up");
    screen->searchBarCancelButtonClicked();
    answer("given up", 200, found);
    EXPECT_EQ(screen->headingOfSection(recent), "RECENT SEARCHES");
    EXPECT_THAT(texts(recent), ElementsAre("dark \"screen\" 100%"));

    const auto requests = fakes.http->sent.size();
    screen->didSelectRow(recent, 0);
    EXPECT_EQ(screen->barText, "dark \"screen\" 100%");
    EXPECT_TRUE(screen->isBarFocused);
    EXPECT_EQ(fakes.http->sent.size(), requests);
}

TEST_F(KBSearchTest, AScreenThatWasLeftDisturbsNoOther) {
    open();
    find(found);
    screen->didSelectRow(top, 0);
    searchFor("again");
    screen->viewWillDisappear();
    fakes.http->answerTo("/kb/get?id=7", 500, {});
    answer("again", 500, {});
    EXPECT_THAT(fakes.progress->shown, IsEmpty());

    screen->viewWillAppear();
    screen->didSelectRow(top, 0);
    searchFor("of a former configuration");
    support->retire();
    fakes.http->answerTo("/kb/get?id=7", 200, {{"results", found}});
    answer("of a former configuration", 200, found);
    EXPECT_EQ(opened(), 0U);
    EXPECT_THAT(fakes.presenter->alerts, IsEmpty());
    EXPECT_THAT(screen->recentSearches, ElementsAre("x"));

    searchFor("for nobody");
    const std::weak_ptr<KBSearchViewController> gone = std::exchange(screen, nullptr);
    EXPECT_TRUE(gone.expired()) << "a request keeps the screen";
    answer("for nobody", 200, found);
}

TEST_F(KBSearchTest, AnArticleOpensAsItsTextOrElseByItsAddress) {
    open();
    find({{{"url", "https://a"}, {"body", "<b>"}},
          {{"url", "https://a"}, {"body", ""}},
          {{"id", "1"}},
          {{"id", "2"}, {"url", ""}},
          {{"title", "Neither"}}});
    screen->didSelectRow(top, 0);
    EXPECT_EQ(dynamic_cast<BaseWebViewController&>(*fakes.presenter->pushed.back()).html, "<b>");
    screen->didSelectRow(top, 1);
    EXPECT_EQ(fakes.presenter->presented.size(), 1U);

    // Of two that are asked for, the latter opens.
    screen->didSelectRow(top, 2);
    screen->didSelectRow(top, 3);
    fakes.http->answerTo("id=1", 200, {{"results", {{{"body", "one"}}}}});
    fakes.http->answerTo("id=2", 200, {{"results", {{{"body", "two"}}}}});
    EXPECT_EQ(dynamic_cast<BaseWebViewController&>(*fakes.presenter->pushed.back()).html, "two");
    EXPECT_EQ(opened(), 3U);

    screen->didSelectRow(top, 4);
    const Json article = {{{"body", "one"}}};
    const std::vector<std::pair<int, Json>> answers{{404, {}},
                                                    {201, {{"results", article}}},
                                                    {200, {{"results", Json::array()}}},
                                                    {200, {{"results", 7}}},
                                                    {200, {{"results", {"text"}}}}};
    for (const auto& [status, body] : answers) {
        screen->didSelectRow(top, 2);
        fakes.http->answerTo("id=1", status, body.is_null() ? Json::object() : body);
    }
    const auto& alerts = fakes.presenter->alerts;
    ASSERT_EQ(alerts.size(), 6U) << "the person is never left with nothing";
    EXPECT_EQ(opened(), 3U);
    EXPECT_EQ(alerts[1].title, "Unable to retrieve knowledge base article");
    EXPECT_EQ(alerts[1].message, "Request failed: not found (404)");
    EXPECT_EQ(alerts[1].actions.front().label, "OK");
}

TEST_F(KBSearchTest, TheRecentSearchesSurviveJunkAndHaveNoLimit) {
    auto& value = stored().values[defaultsKey::recentSearches];
    value = "text";
    open();
    EXPECT_THAT(texts(recent), IsEmpty());
    value = {"x", 7, nullptr, "y", Json::array({"z"})};
    open();
    EXPECT_THAT(texts(recent), ElementsAre("x", "y"));

    value = Json::array();
    for (int each = 0; each < 20'000; ++each) value.push_back("search " + std::to_string(each));
    open();
    searchFor("search 19999");
    answer("search 19999", 200, found);
    find(found);
    EXPECT_EQ(value.size(), 20'001U);
    EXPECT_EQ(value.front(), "search 0");
    EXPECT_EQ(value.back(), "x");
}

}  // namespace
}  // namespace supportsdk::test
