#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstdio>

#include "backends/sqlite/SqliteUserDefaults.h"
#include "service/state/CredentialBlock.h"
#include "tests/e2e/FaultRoad.h"

// Knowledge base, history, rating and call-me, while the service fails, hangs or answers what
// nobody expects; and amounts that nobody expects.

namespace supportsdk::test {
namespace {

using testing::SizeIs;

enum class Step { tree, search, article, history, rate, call, number };

constexpr std::array names = {"tree", "search", "article", "history", "rate", "call", "number"};
constexpr std::array paths = {"/kb/get",
                              "/kb/search",
                              "/kb/get",
                              "/issues/history",
                              "/issues/rate/4002",
                              "/issues/create",
                              "/customers/getCallbackNumber/u-101"};

using Texts = std::vector<std::string>;

/// A kind of fault, or the answer itself.
const Texts unreadable = {"garbage", "list", "cut"};
const Texts empty = {
    R"({})",
    R"({"results":null})",
    R"({"results":7})",
    R"({"results":"x"})",
    R"({"results":{"0":{"id":"1"}}})",
    R"({"results":[]})",
};
const Texts strangers = {
    R"({"results":[7,null,"x",[],{"id":7,"title":{},"type":"0","parent_id":[],"status":"7"}]})"};
const Texts failing = {"status", "drop"};

Texts join(const std::vector<Texts>& lists) {
    Texts all;
    for (const auto& list : lists) all.insert(all.end(), list.begin(), list.end());
    return all;
}

const std::string kServer = "Request failed: internal server error (500)";
const std::string kLost = "The connection to the server was lost.";
const std::string kUnread = "The response could not be read.";
const std::string kRetrieving = "Retrieving";
const std::string kRatingIt = "Rating your support experience";
const std::string kCalling = "Requesting callback";

std::string noArticle(const std::string& why) {
    return "Unable to retrieve knowledge base article[" + why + "]";
}

struct Row {
    Step step;
    Texts faults;
    Texts sees;
};

const std::vector<Row> rows = {
    {Step::tree, join({failing, unreadable, empty, strangers}), {kRetrieving, kGone}},
    {Step::search, join({failing, unreadable, empty}), {"No results."}},

    {Step::article, {"status"}, {noArticle(kServer)}},
    {Step::article, {"drop", "cut"}, {noArticle(kLost)}},
    {Step::article, {"garbage", "list"}, {noArticle(kUnread)}},
    {Step::article, join({empty, strangers}), {noArticle("")}},

    {Step::history, failing, {kRetrieving, kGone}},
    // Only a failure takes the text away; else it stays until the person leaves.
    {Step::history, join({unreadable, empty}), {kRetrieving}},

    {Step::rate, {"status"}, {"left", kRatingIt, "Unable to rate issue: " + kServer}},
    {Step::rate, {"drop"}, {"left", kRatingIt, "Unable to rate issue: " + kLost}},
    // The rating may have been taken; nothing but the end of the progress tells.
    {Step::rate, join({{"garbage", "list"}, empty}), {"left", kRatingIt, kGone}},

    {Step::call, {"status"}, {"left", kCalling, "Unable to create issue: " + kServer}},
    {Step::call, {"drop"}, {"left", kCalling, "Unable to create issue: " + kLost}},
    {Step::call, join({unreadable, empty}), {"left", kCalling, kGone}},

    // The person types the number, then.
    {Step::number, join({failing, unreadable, {R"({})", R"({"callback_number":7})"}}), {}},
};

class ChannelFaults : public FaultRoad {
 protected:
    void hit(const std::string& fault, const std::string& path) {
        if (fault.starts_with('{')) {
            strike("answer", path, {{"times", 0}, {"content", fault}});
        } else {
            strike(fault, path, {{"times", 0}});
        }
    }

    /// Loads while every request to `path` fails, one after the other.
    void loadWithout(const std::string& path) {
        hit("status", path);
        auto from = now();
        host->send({{"do", "load"}, {"configuration", service->configuration()}});
        host->await("delegate", {{"operation", "supportButtonDidGetSettings"}});
        awaitAnswer(path, from);
        from = now();
        host->send({{"do", "customer"}, {"information", service->ready()["customer"]}});
        host->await("delegate", {{"operation", "supportButtonDidGetCustomer"}});
        if (path == "/issues/history") awaitAnswer(path, from);
    }

    void awaitAnswer(const std::string& path, std::uint64_t from) {
        EXPECT_TRUE(service->await("answered", {{"path", "/sdk/v1" + path}}, from)) << path;
    }

    void search(const std::string& text) {
        host->send({{"do", "type"}, {"text", text}});
        host->send({{"do", "send"}});
    }

    void openSearch() {
        openScreen("Help articles", kList);
        press("Search");
        awaitScreen(kSearch);
    }

    Json searchWell(const std::string& text) {
        search(text);
        return host->await("results",
                           [](const Json& report) { return !rowsOf(report, 1).empty(); });
    }

    std::uint64_t now() { return service->get("/events")->at("next"); }

    Json requestsSince(std::uint64_t number) {
        return service->get("/events?kind=request&after=" + std::to_string(number))->at("results");
    }
};

class EachChannel : public ChannelFaults, public testing::WithParamInterface<Step> {
 protected:
    [[nodiscard]] std::string path() const {
        return paths.at(static_cast<std::size_t>(GetParam()));
    }

    /// To the place where the person causes the request. What is fetched at the start is kept from
    /// coming.
    void walk() {
        const bool isFetchedAtStart = GetParam() == Step::tree || GetParam() == Step::history;
        isFetchedAtStart ? loadWithout(path()) : load();
        if (GetParam() == Step::search || GetParam() == Step::article) openSearch();
        if (GetParam() == Step::article) searchWell("dark");
        if (GetParam() == Step::rate) cases_ = openList("My cases", kHistory);
    }

    /// Causes the request.
    void take() {
        switch (GetParam()) {
            case Step::tree:
                return choose("Help articles");
            case Step::search:
                return search("dark");
            case Step::article:
                return select(0, 1);
            case Step::history:
                return choose("My cases");
            case Step::rate:
                selectLabelled(cases_, "Chat ID: SC-4002");
                awaitScreen(kRating);
                return press("Submit");
            case Step::call:
                openScreen("Call me back", kCallMe);
                host->send({{"do", "type"}, {"text", "212 955 0147"}});
                return press("Submit");
            case Step::number:
                return choose("Call me back");
        }
    }

    /// Where the person is then, whatever comes of it.
    void arrive() {
        if (GetParam() == Step::tree) awaitScreen(kList);
        if (GetParam() == Step::history) awaitScreen(kHistory);
        if (GetParam() != Step::number) return;
        EXPECT_EQ(awaitScreen(kCallMe)["fields"][0]["value"], "");
    }

    void leave() {
        if (GetParam() == Step::tree) back(kList);
        if (GetParam() == Step::history) back(kHistory);
        if (GetParam() == Step::number) back(kCallMe);
        if (GetParam() == Step::article) Road::take("OK");
    }

    /// Of a program that has met with every fault.
    void expectWellAgain() {
        if (GetParam() == Step::tree || GetParam() == Step::history) {
            load();
            GetParam() == Step::tree ? openList("Help articles", kList)
                                     : openList("My cases", kHistory);
            return;
        }
        if (GetParam() == Step::search) {
            searchWell("dark");
            return;
        }
        mark();
        take();
        if (GetParam() == Step::rate) expectSights({"left", kRatingIt, kGone});
        if (GetParam() == Step::call) host->await("info");
        if (GetParam() == Step::article) host->await("web", {{"title", "The screen stays dark"}});
        if (GetParam() != Step::number) return;
        EXPECT_EQ(awaitScreen(kCallMe)["fields"][0]["value"], "+1 555 0101");
    }

 private:
    Json cases_;
};

TEST_P(EachChannel, FailsInWordsAndGoesOn) {
    walk();
    for (const auto& [step, faults, sees] : rows) {
        if (step != GetParam()) continue;
        for (const auto& fault : faults) {
            SCOPED_TRACE(fault);
            ASSERT_TRUE(service->remove("/faults"));
            hit(fault, path());
            const auto from = now();
            mark();
            take();
            arrive();
            expectSights(sees);
            awaitAnswer(path(), from);
            leave();
        }
    }
    ASSERT_TRUE(service->remove("/faults"));
    if (GetParam() == Step::rate) {
        // The case stays without a rating, for the other test.
        hit(R"({"results":[{"id":"4002"}]})", path());
    } else {
        strike("delay", path(), {{"milliseconds", 200}});
    }
    expectWellAgain();
    host->send({{"do", "quit"}});
    expectPromptEnd();
}

TEST_P(EachChannel, SaysNothingOnTheNextScreenAndLetsTheProgramEnd) {
    for (const bool goesOn : {false, true}) {
        host = startHost();
        walk();
        ASSERT_TRUE(service->remove("/faults"));
        const auto from = now();
        hit("silence", path());
        take();
        ASSERT_TRUE(service->await("request", {{"path", "/sdk/v1" + path()}}, from));
        if (goesOn) break;
        host->send({{"do", "quit"}});
        expectPromptEnd();
        ASSERT_TRUE(service->remove("/faults"));
    }
    openScreen("Installations", kJourneys);
    mark();
    ASSERT_TRUE(service->remove("/faults"));
    // The application hears what became of a request that is not simply asked again.
    if (GetParam() == Step::rate) expectSights({"Unable to rate issue: " + kLost});
    if (GetParam() == Step::call) expectSights({"Unable to create issue: " + kLost});
    // A dialog that was asked for comes, however late.
    if (GetParam() == Step::number) awaitScreen(kCallMe);
    // Asked for behind it, so all that the late answer says is said by then.
    host->send({{"do", "customer"}, {"information", service->ready()["customer"]}});
    expectSights({"customer"});
}

INSTANTIATE_TEST_SUITE_P(Of, EachChannel,
                         testing::Values(Step::tree, Step::search, Step::article, Step::history,
                                         Step::rate, Step::call, Step::number),
                         [](const auto& step) {
                             return names.at(static_cast<std::size_t>(step.param));
                         });

TEST_F(ChannelFaults, ResultsOfAnyShapeAreRowsThatCanBeChosen) {
    load();
    openSearch();
    hit(strangers.front(), "/kb/search");
    EXPECT_THAT(rowsOf(searchWell("anything"), 1), SizeIs(5));
    for (const auto& [row, why] : {std::pair{0U, ""}, {4U, "Request failed: not found (404)"}}) {
        mark();
        select(row, 1);
        expectSights({noArticle(why)});
        Road::take("OK");
    }
}

TEST_F(ChannelFaults, JourneysThatCannotBeReadAreNotOffered) {
    for (const auto& fault : join({failing, unreadable, empty})) {
        SCOPED_TRACE(fault);
        ASSERT_TRUE(service->remove("/faults"));
        hit(fault, "/journeys/data");
        load();
        EXPECT_EQ(openMenu()["entries"].size(), 8U);
    }
    ASSERT_TRUE(service->remove("/faults"));
    hit(strangers.front(), "/journeys/data");
    load();
    EXPECT_THAT(rowsOf(openScreen("Installations", kJourneys)), SizeIs(5));
    mark();
    select(4);
    expectSights({"Unable to open webpage"});
}

TEST_F(ChannelFaults, ASearchSaysWhatWasTypedAndNothingElse) {
    struct Search {
        std::string text;
        std::optional<std::string> heard;
    };
    const std::vector<Search> searches = {
        {"no such  thing", "no such  thing"},
        {"\"none\" <b>\\^`{|}", "\"none\" <b>\\^`{|}"},
        {"none\r\nX-Evil: 1\r\n\r\nGET / HTTP/1.1", "none\r\nX-Evil: 1\r\n\r\nGET / HTTP/1.1"},
        {"../../issues/4001", "../../issues/4001"},
        {"nichts – zu finden 木 \u00e4", "nichts – zu finden 木 \u00e4"},
        {"Is there none? Why?", "Is there none? Why?"},
        {"none 100%", {}},
        {"none%0d%0aX-Evil: 1", {}},
        {"none&members_id=m-100#top?x", {}},
        {std::string("none\0none", 9), {}},
        {"", ""},
        {std::string(100'000, 'q'), {}},
    };
    load();
    openSearch();
    auto from = now();
    searchWell("dark screen");
    const auto usual = requestsSince(from).at(0)["headers"];
    for (const auto& [text, heard] : searches) {
        SCOPED_TRACE(text.substr(0, 40));
        from = now();
        search(text);
        host->await("error", {{"text", "No results."}});
        const auto requests = requestsSince(from);
        ASSERT_LE(requests.size(), 1U);
        if (heard) {
            ASSERT_EQ(requests.size(), 1U);
            EXPECT_EQ(requests[0]["query"], (Json{{"query", *heard}}));
        }
        for (const auto& request : requests) {
            EXPECT_EQ(request["path"], "/sdk/v1/kb/search");
            EXPECT_EQ(request["headers"].size(), usual.size());
            EXPECT_FALSE(request["headers"].contains("x-evil"));
        }
    }
    searchWell("dark screen");
}

TEST_F(ChannelFaults, AmountsThatNobodyReadsAreListedAllTheSame) {
    constexpr int many = 100'000;
    constexpr int articles = 20'000;
    Json texts = Json::array();
    for (int i = 0; i < many; ++i) texts.push_back("text " + std::to_string(i));
    Json entries = Json::array({{{"id", "0"}, {"type", 2}},
                                {{"id", "1"}, {"type", 1}, {"title", "All"}, {"parent_id", "0"}}});
    for (int i = 0; i < articles; ++i)
        entries.push_back({{"id", "a" + std::to_string(i)}, {"title", "?"}, {"parent_id", "1"}});
    SqliteUserDefaultsStore(folder.path / "host")
        .standard()
        ->setValue("com.goquorrand.store.recentsearches", texts);
    hit(Json{{"results", entries}}.dump(), "/kb/get");
    load();
    EXPECT_THAT(openList("Help articles", kList), SizeIs(articles + 1));
    select(0);
    EXPECT_THAT(rowsOf(host->await("changed", {{"class", kList}})), SizeIs(1));
    press("Search");
    EXPECT_THAT(rowsOf(awaitScreen(kSearch)), SizeIs(many));
    searchWell("dark");
    host->send({{"do", "type"}, {"text", ""}});
    const auto recents =
        host->await("recent searches", [](const Json& report) { return !rowsOf(report).empty(); });
    EXPECT_EQ(rowsOf(recents).back()["label"], "dark");
    EXPECT_THAT(rowsOf(recents), SizeIs(many + 1));
}

TEST_F(ChannelFaults, CasesOfAnyShapeAreListedAndOpenedOrNot) {
    const auto configuration = service->configuration();
    const auto block = service::encryptCredentials({"c", "", "", "", 0, "members_users:u-101;1"},
                                                   configuration["apiKey"]);
    const auto caseOf = [&](const std::string& id, const Json& transcripts, Json more = {}) {
        Json issue = {{"id", id},
                      {"reference_num", id},
                      {"xmpp_data", *block},
                      {"comm_id", "c"},
                      {"status", 9},
                      {"isRated", 1},
                      {"resolved", "2024-13-99"},
                      {"rating", "5"},
                      {"transcripts", transcripts}};
        if (more.is_object()) issue.update(more);
        return issue;
    };
    Json lines = Json::object();
    constexpr int many = 10'000;
    for (int i = 0; i < many; ++i) {
        std::array<char, 32> date{};
        std::snprintf(date.data(), date.size(), "2024-05-%02d %02d:%02d:%02d.000",
                      1 + i / 3600 / 24, i / 3600 % 24, i / 60 % 60, i % 60);
        lines[date.data()] = {
            {"from", "Jo"}, {"message", "Line " + std::to_string(i)}, {"sent", date.data()}};
    }
    const Json odd = {{"yesterday", {{"message", "Undated"}, {"from", 7}, {"sent", "yesterday"}}},
                      {"2024-05-01 10:00:00.000", nullptr},
                      {"2024-05-01 10:00:01.000", {{"message", nullptr}, {"from_key", {}}}}};
    Json cases = Json::array({
        caseOf("long", Json::object({{"c", lines}})),
        caseOf("odd", Json::object({{"c", odd}}), {{"created", "yesterday"}}),
        caseOf("other", Json::object({{"d", odd}})),
        caseOf("list", Json::object({{"c", {1, nullptr, "x"}}})),
        caseOf("null", nullptr),
        caseOf("text", "x", {{"created", 7}, {"status", "9"}, {"owner_user_avatar", {1}}}),
    });
    const auto known = cases.size();
    while (cases.size() < 5'000)
        cases.push_back(caseOf("more", nullptr, {{"created", "2023-01-01 00:00:00"}}));
    hit(Json{{"results", cases}}.dump(), "/issues/history");
    load();
    const auto listed = openList("My cases", kHistory);
    EXPECT_THAT(listed, SizeIs(cases.size()));
    const auto open = [&](const std::string& id) { selectLabelled(listed, "Chat ID: " + id); };
    for (std::size_t i = 4; i < known; ++i) {
        open(cases[i]["id"]);
        host->await("error", {{"text", "This issue has no chat history."}});
    }
    for (const auto& [id, count] :
         {std::pair{"long", many}, {"odd", 2}, {"other", 0}, {"list", 0}}) {
        SCOPED_TRACE(id);
        open(id);
        host->await("its lines", [count = count](const Json& report) {
            int shown = 0;
            for (const auto& group : report.value("groups", Json::array()))
                shown += static_cast<int>(group["lines"].size());
            return report.value("class", "") == "ChatViewController" && shown == count;
        });
        back("ChatViewController");
    }
    host->send({{"do", "quit"}});
    expectPromptEnd();
}

}  // namespace
}  // namespace supportsdk::test
