#include "supportsdk/chat/ChatViewController.h"
#include "supportsdk/chat/QDChatViewModel.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/core/EventManager.h"
#include "supportsdk/forms/QDFieldModel.h"
#include "supportsdk/launcher/HistoryAvatars.h"
#include "supportsdk/launcher/HistoryViewController.h"
#include "supportsdk/launcher/SupportButton.h"
#include "tests/core/SupportFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Picture : HistoryViewController::View {
    void reloadTable() override { ++reloads; }
    int reloads = 0;
};

class HistoryTest : public SupportTest {
 protected:
    HistoryTest() { support->features.historyEnabled = true; }

    static Json issue(const std::string& id, const Json& status, const std::string& created) {
        return {{"id", id}, {"reference_num", id}, {"status", status}, {"created", created}};
    }

    void answer(int status, const Json& body) {
        support->getHistory();
        fakes.http->answerTo("/issues/history", status, body);
    }

    /// The numbers of the rows, in their order, each of which is described for it.
    std::string rows() const {
        std::string all;
        for (std::size_t row = 0; row < screen->numberOfRows(); ++row) {
            all += screen->row(row).chatId.substr(sizeof("Chat ID: ") - 1);
        }
        return all;
    }

    /// Opens the switches by their button.
    std::shared_ptr<HistoryActionPopupMenu> openMenu() {
        screen->rightBarButtons.at(0).action();
        return std::dynamic_pointer_cast<HistoryActionPopupMenu>(fakes.presenter->presented.back());
    }

    /// Opens an issue as its row would; the chat that was pushed, or null.
    std::shared_ptr<ChatViewController> choose(const Json& record) {
        fakes.presenter->pushed.clear();
        HistoryViewModel model(fakes.clock, nullptr, {});
        screen->viewModelDidSelectEntry(model, std::make_shared<QDIssue>(record));
        if (fakes.presenter->pushed.empty()) return nullptr;
        return std::dynamic_pointer_cast<ChatViewController>(fakes.presenter->pushed.back());
    }

    /// Issues of that many agents, and another one of the first.
    void appearWithAgents(int count) {
        Json records = Json::array();
        for (int i = 0; i <= count; ++i) {
            records.push_back(issue("", 1, ""));
            records.back()["owner_user_avatar"] = "https://a.example/" + std::to_string(i % count);
        }
        answer(200, {{"results", records}});
        screen->view = pictures;
        screen->viewDidLoad();
        screen->viewWillAppear();
    }

    std::shared_ptr<Support> support = startWithSettings();
    std::shared_ptr<HistoryViewController> screen = HistoryViewController::create(support, {});
    const std::shared_ptr<Picture> pictures = std::make_shared<Picture>();
    const Json lines = {{"c1", {{"2026-01-02 10:00:00.000", {{"message", "hi"}}}}}};
};

TEST_F(HistoryTest, StoredSwitchesFilterAndTheNewestComesFirst) {
    const Json records = {issue("A", Json(), "2026-01-02 10:00:00"),
                          issue("B", 7, "2025-12-31 23:59:59"),
                          issue("C", 9, "2026-01-31 08:00:00"), issue("D", 6, "soon")};
    answer(200, {{"results", records}});
    screen->viewDidLoad();
    EXPECT_EQ(rows(), "CABD");

    const auto menu = openMenu();
    EXPECT_TRUE(menu->setRow(0, false) && menu->setRow(1, false));
    EXPECT_EQ(rows(), "BC");
    EXPECT_EQ(stored().values["com.goquorrandn.history.show_open"], false);
    EXPECT_EQ(stored().values["com.goquorrandn.history.show_closed"], true);
    EXPECT_EQ(stored().flushes, 2);
    EXPECT_FALSE(menu->setRow(4, false));
    EXPECT_EQ(support->historyViewModel->originalEntries.size(), 4U);

    // Another launch.
    screen = HistoryViewController::create(support, {});
    screen->viewDidLoad();
    EXPECT_EQ(rows(), "BC");
    screen->didSelectRow(0);
    EXPECT_EQ(support->rateableIssueId, "B") << "it asks for a rating";
    EXPECT_THAT(fakes.presenter->pushed, IsEmpty());
    screen->back();
    EXPECT_THAT(fakes.presenter->log, ElementsAre("pop History"));
}

TEST_F(HistoryTest, AListThatComesWhileTheScreenIsOpenWaitsForTheSwitches) {
    stored().values["com.goquorrandn.history.show_resolved"] = false;
    screen->viewDidLoad();
    auto menu = openMenu();
    EXPECT_TRUE(menu->isRowOn(3));
    EXPECT_FALSE(menu->isRowOn(2)) << "before there is a list";
    menu->setRow(3, false);

    fakes.http->answerTo("/issues/history", 200,
                         {{"results",
                           {issue("A", 1, "2026-01-02 10:00:00"), issue("B", 8, ""),
                            issue("C", 7, "2026-01-01 10:00:00")}}});
    EXPECT_EQ(rows(), "");
    menu = openMenu();
    EXPECT_EQ(rows(), "") << "loaded, but not sorted";
    std::string labels;
    for (std::size_t row = 0; row < 5; ++row)
        labels += menu->labelOfRow(row) + (menu->isRowOn(row) ? "+" : "-");
    EXPECT_EQ(labels, "Sort Descending+Open+Resolved-Closed--");
    menu->setRow(2, true);
    EXPECT_EQ(rows(), "AC");
    menu->close();
    EXPECT_THAT(fakes.presenter->log, ElementsAre("dismiss "));
}

TEST_F(HistoryTest, SwitchesAreTakenByPosition) {
    answer(200, {{"results", {issue("A", 1, ""), issue("B", 7, ""), issue("C", 8, "")}}});
    screen->viewDidLoad();
    const auto menu = openMenu();
    const auto field = [](const Json& value) {
        return std::make_shared<QDFieldModel>("Closed", "", "", value, 4);
    };
    screen->menuDidUpdateEntries(*menu, {});
    EXPECT_EQ(rows(), "ABC");
    screen->menuDidUpdateEntries(*menu, {nullptr, field(false), field(0.0), field("0"), field(1)});
    EXPECT_EQ(rows(), "C");
    screen->menuDidUpdateEntries(*menu, {field(Json()), field(true), field(2)});
    EXPECT_EQ(rows(), "ABC");
    fakes.presenter->presented.clear();
    screen->showActionMenu(nullptr);
    EXPECT_THAT(fakes.presenter->presented, IsEmpty());
}

TEST_F(HistoryTest, WhatIsNoListLeavesTheScreenAsItIs) {
    answer(200, {{"results", {issue("A", 1, "2026-01-02 10:00:00")}}});
    screen->viewDidLoad();
    const auto model = support->historyViewModel;
    answer(200, {{"results", Json::object()}});
    EXPECT_THAT(fakes.progress->shown, IsEmpty());
    answer(503, Json::object());
    EXPECT_THAT(fakes.progress->shown, ElementsAre("dismiss"));
    EXPECT_EQ(support->historyViewModel, model);
    EXPECT_EQ(rows(), "A");
}

TEST_F(HistoryTest, AnAnswerThatWasOvertakenChangesNothing) {
    support->identity.membersLocationsId = {};
    support->getHistory();
    const Json location = "l";
    support->identity.membersLocationsId = IdentityValue(&location);
    support->getHistory();
    const Json one = {{"results", {issue("A", 1, "2026-01-02 10:00:00")}}};
    fakes.http->answerTo("=(null)", 200, one);
    EXPECT_EQ(support->historyViewModel, nullptr);
    fakes.http->answerTo("=l", 200, one);
    EXPECT_EQ(support->historyEntries.size(), 1U);
    EXPECT_FALSE(support->isHistoryRequested);

    // An earlier answer for the same location is better than a later failure.
    for (int request = 0; request < 4; ++request) support->getHistory();
    const auto shown = support->historyViewModel;
    const auto last = fakes.http->sent.size() - 1;
    fakes.http->answer(last - 1, 503, Json::object());
    EXPECT_THAT(fakes.progress->shown, IsEmpty());
    fakes.http->answer(last - 2, 200, {{"results", Json::array()}});
    EXPECT_TRUE(support->isHistoryRequested);
    fakes.http->answer(last - 3, 200, one);
    fakes.http->answer(last, 503, Json::object());
    EXPECT_NE(support->historyViewModel, shown);
    EXPECT_THAT(support->historyEntries, IsEmpty());
    EXPECT_FALSE(support->isHistoryRequested);
}

TEST_F(HistoryTest, TheTextOfARequestGoesWithTheScreen) {
    std::vector<std::string> events;
    const auto observation = EventManager::addObserver([&](const Notification& notification) {
        events.push_back(notification.object.text().value_or(""));
    });
    screen->viewDidLoad();
    screen->viewWillAppear();
    fakes.http->answerTo("/issues/history", 200, {{"results", Json::array()}});
    EXPECT_THAT(fakes.progress->shown, ElementsAre("status Retrieving"));
    screen->viewWillDisappear();
    EXPECT_THAT(fakes.progress->shown, ElementsAre("status Retrieving", "dismiss"));
    EXPECT_THAT(events, ElementsAre("com.goquorrand.event.history.started",
                                    "com.goquorrand.event.history.ended"));

    // It is gone before the next screen shows a text of its own.
    support->isHistoryRequested = true;
    screen->viewWillAppear();
    choose(issue("A", 1, ""));
    EXPECT_EQ(fakes.progress->shown.at(3), "dismiss");
}

TEST_F(HistoryTest, ARowSaysWhatIsKnown) {
    auto open = issue("12", 3, "2026-01-31 23:30:00");
    open["resolved"] = "2026-02-01 10:00:00";
    open["isRated"] = true;
    open["transcripts"] = {{"c1",
                            {{"2026-01-31 23:31:00.000", {{"from", "Ann"}, {"message", "old"}}},
                             {"2026-02-01 00:01:00.500", {{"from", "Bo"}, {"message", "new"}}},
                             {"zzz", {{"from", "Eve"}, {"message", "no date"}}}}}};
    auto row = historyRow(QDIssue(open), *fakes.platform);
    EXPECT_EQ(row.chatId, "Chat ID: 12");
    EXPECT_EQ(row.date, "January 31, 2026");
    EXPECT_EQ(row.status, "Status: Open");
    EXPECT_EQ(row.rating, "");
    EXPECT_EQ(row.latestMessage, "Bo: new");

    auto closed = open;
    closed["status"] = 8;
    closed["rating"] = 4;
    row = historyRow(QDIssue(closed), *fakes.platform);
    EXPECT_EQ(row.date, "February 01, 2026");
    EXPECT_EQ(row.rating, "Rating: 4");
    EXPECT_EQ(row.latestMessage, "");

    for (const Json& odd :
         {Json{{"c1", Json()}}, Json{{"c1", "text"}}, lines, Json{{"c1", Json::array({1})}}}) {
        open["transcripts"] = odd;
        open["created"] = "2026-02-30 10:00:00";
        row = historyRow(QDIssue(open), *fakes.platform);
        EXPECT_EQ(row.latestMessage + row.date, "") << odd;
    }
}

TEST_F(HistoryTest, AnIssueOpensItsChatWhenItHasOne) {
    auto record = issue("A", 7, "2026-01-02 10:00:00");
    record["comm_id"] = "c1";
    record["transcripts"] = lines;
    record["isRated"] = true;
    const auto rated = choose(record);
    ASSERT_TRUE(rated);
    EXPECT_TRUE(rated->isReadOnly);
    EXPECT_EQ(rated->chatRoomTitle, "Site History");
    EXPECT_TRUE(rated->rating);

    record["status"] = 6;
    const auto open = choose(record);
    ASSERT_TRUE(open);
    EXPECT_FALSE(open->isReadOnly);
    EXPECT_EQ(open->chatRoomTitle, "");
    EXPECT_TRUE(open->isVideoUnavailable);
    // Only what was resolved is asked about.
    record["status"] = 8;
    record["isRated"] = false;
    const auto closed = choose(record);
    EXPECT_TRUE(closed && closed->isReadOnly);

    auto silent = record;
    silent["transcripts"] = Json::object();
    EXPECT_FALSE(choose(silent));
    record.erase("comm_id");
    EXPECT_FALSE(choose(record));
    const auto* words = "error This issue has no chat history.";
    EXPECT_THAT(fakes.progress->shown, ElementsAre(words, words));
}

TEST_F(HistoryTest, PicturesOfAgentsComeOnceAndTogether) {
    fakes.kitBundle->files["user-placeholder-round.png"] = "placeholder";
    appearWithAgents(300);
    (void)rows();
    const auto placeholder = screen->row(0).avatarImage;
    EXPECT_TRUE(placeholder);
    EXPECT_EQ(pictures->reloads, 2);

    std::size_t sent = 2;
    for (; sent < fakes.http->sent.size(); ++sent) {
        fakes.http->answerRaw(sent, {sent == 3 ? 404 : 200, {}, toBytes("image"), ""});
        fakes.queue->drain();
    }
    EXPECT_EQ(sent, 2 + HistoryAvatars::maximumAddresses);
    fakes.queue->advance(std::chrono::seconds{1});
    EXPECT_EQ(pictures->reloads, 3);
    EXPECT_NE(screen->row(0).avatarImage, placeholder);
    EXPECT_TRUE(screen->row(0).isAvatarLoaded && !screen->row(1).isAvatarLoaded);
    EXPECT_EQ(screen->row(0).avatarImage, screen->row(300).avatarImage) << "the same agent";
    EXPECT_EQ(screen->row(1).avatarImage, placeholder) << "refused";
    EXPECT_EQ(screen->row(299).avatarImage, placeholder) << "one too many";
    EXPECT_EQ(fakes.http->sent.size(), sent);
}

TEST_F(HistoryTest, PicturesAreGivenUpWithTheScreen) {
    appearWithAgents(1);
    EXPECT_FALSE(screen->row(0).avatarImage) << "not even the placeholder is there";
    fakes.http->answerTo("a.example", 200, "image");
    screen->viewWillDisappear();
    fakes.queue->advance(std::chrono::seconds{1});
    EXPECT_EQ(pictures->reloads, 2);

    EXPECT_FALSE(screen->row(0).avatarImage);
    fakes.http->answerTo("a.example", 200, "image");
    fakes.queue->advance(std::chrono::seconds{1});
    EXPECT_TRUE(screen->row(0).avatarImage);
}

}  // namespace
}  // namespace supportsdk::test
