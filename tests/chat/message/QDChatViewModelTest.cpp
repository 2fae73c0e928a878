#include "supportsdk/chat/QDChatViewModel.h"

#include <limits>
#include <random>
#include <set>

#include "supportsdk/chat/QDChatActionButton.h"
#include "supportsdk/chat/QDChatButtonCollectionView.h"
#include "supportsdk/chat/QDChatCollectionView.h"
#include "tests/chat/ChatFixture.h"

namespace supportsdk::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class ChatViewModel : public ChatFixture, public testing::Test {
 public:
    /// A line with one button.
    QDChatViewModel::Message at(std::chrono::minutes minute, const std::string& text,
                                const std::string& from = "agent") const {
        fakes.clock->time = Clock::Time(1769860800s + minute);
        auto json = Json{{"secret", QuorrandChatMessage::MD5("plain")},
                         {"message", text},
                         {"actions", {{{"lbl", "B"}}}}};
        return line({.body = json.dump(), .from = "room@x/" + from});
    }
    [[nodiscard]] std::vector<std::vector<std::string>> shown() const {
        std::vector<std::vector<std::string>> groups;
        for (const auto& group : model.messageGroups()) {
            groups.emplace_back();
            for (const auto& message : group) groups.back().push_back(*message->text);
        }
        return groups;
    }
    /// What must be shown, told without any shortcut.
    [[nodiscard]] std::vector<QDChatViewModel::Group> plainRule() const {
        QDChatViewModel::Group kept;
        for (const auto& message : model.messages()) {
            if (chat->isParticipant(message->from)) kept.push_back(message);
        }
        const auto dateOf = [](const auto& message) {
            return message->date.value_or(Clock::Time{});
        };
        std::stable_sort(kept.begin(), kept.end(), [&](const auto& left, const auto& right) {
            return dateOf(left) < dateOf(right);
        });
        std::vector<QDChatViewModel::Group> groups;
        for (const auto& message : kept) {
            if (groups.empty() || dateOf(message) - dateOf(groups.back().back()) > 120s)
                groups.emplace_back();
            groups.back().push_back(message);
        }
        return groups;
    }

    void letIn(const std::set<std::string>& senders) const {
        Json eligible = Json::object();
        for (const auto& sender : senders) eligible[sender] = {{"name", "Ms " + sender}};
        chat->setParticipantsEligible(eligible);
    }
    void SetUp() override { letIn({"", "agent"}); }

    QDChatViewModel model{chat};
};

TEST_F(ChatViewModel, RestoredLinesStandInFrontOfNewerOnesAndOnlyTheLastIsLive) {
    const auto first = at(0min, "first");
    const auto last = at(1min, "last");
    model.restoreMessages({first, last, first});
    EXPECT_THAT(model.messages(), ElementsAre(first, last));
    EXPECT_FALSE(last->disabled);

    model.clearMessages();
    const auto newer = at(1min, "newer");
    model.addMessage(newer);
    model.restoreMessages({first, at(1min, "newer"), last});
    EXPECT_THAT(model.messages(), ElementsAre(first, last, newer));
    EXPECT_THAT(shown(), ElementsAre(ElementsAre("first", "last", "newer")));
    EXPECT_TRUE(last->disabled);
    EXPECT_FALSE(newer->disabled);
}

TEST_F(ChatViewModel, HistoryRepeatsARestoredLineWithTheServersStamp) {
    const auto replayed = [this](const std::string& stamp, const std::string& id = "") {
        return line({.body = "ok",
                     .from = "room@x/agent",
                     .id = id,
                     .children = "<delay xmlns='urn:xmpp:delay' stamp='2026-01-31T12:" + stamp +
                                 ":00Z'/>"});
    };
    fakes.clock->time = Clock::Time(1769860800s);  // 12:00
    const auto live = line({.body = "ok", .from = "room@x/agent"});
    model.restoreMessages({live});

    model.addMessage(replayed("02"));
    model.addMessage(replayed("01", "of its own"));
    EXPECT_EQ(model.messages().size(), 3);
    EXPECT_TRUE(model.isRestoredMessage(*replayed("01")));
    model.addMessage(replayed("01"));
    EXPECT_EQ(model.messages().size(), 3);
    // Said again, and asked for again.
    model.addMessage(replayed("00"));
    model.addMessage(replayed("01"));
    EXPECT_EQ(model.messages().size(), 3);
    model.addMessage(replayed("03"));
    EXPECT_EQ(model.messages().size(), 4);
}

TEST_F(ChatViewModel, ShortcutsShowWhatThePlainRuleShows) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto below = [&random](int bound) { return static_cast<int>(random() % bound); };
        const std::array<std::string, 4> senders{"a", "b", "c", "d"};
        std::set<std::string> eligible{""};
        const int span = 1 + below(400);
        // Some chats run on, in others every line has any old date.
        const int oddities = 1 + below(4);
        auto now = 0min;
        letIn(eligible);
        model.clearMessages();
        for (int step = below(200); step > 0; --step) {
            const auto& sender = senders[below(4)];
            if (below(20) == 0) {
                if (!eligible.erase(sender)) eligible.insert(sender);
                letIn(eligible);
                const auto revision = chat->participantsRevision();
                letIn(eligible);
                ASSERT_EQ(chat->participantsRevision(), revision) << "the same ones again";
                chat->ignoreParticipantStatus = below(10) == 0;
            }
            now += std::chrono::minutes{below(4)};
            const auto minute = below(oddities) == 0 ? now : std::chrono::minutes{below(span)};
            auto added = at(minute, std::to_string(below(3)), sender);
            if (below(30) == 0)
                added = QuorrandChatMessage::createWithTranscript(*chat, {{"message", "undated"}});
            const auto before = model.messages();
            if (below(40) == 0) {
                model.clearMessages();
                model.addMessage(added);
                model.restoreMessages(before);
            } else {
                model.addMessage(added);
            }
            // A duplicate does not even regroup.
            if (model.messages().size() == before.size()) continue;
            ASSERT_TRUE(model.messageGroups() == plainRule()) << "before the end by " << step;
        }
        for (const auto& message : model.messages())
            ASSERT_EQ(message->disabled, message != model.lastMessage());
    }
}

TEST_F(ChatViewModel, ListShowsHeadersLinesAndTheTypingIndicator) {
    EXPECT_EQ(model.numberOfSectionsInCollectionView(), 0);
    const auto line = at(0min, "hello");
    model.addMessage(line);
    chat->typingType = 2;
    EXPECT_EQ(model.numberOfSectionsInCollectionView(), 2);
    EXPECT_EQ(model.numberOfItemsInSection(0), 2);
    EXPECT_EQ(model.numberOfItemsInSection(1), 1);
    const auto cell = [this](std::size_t section, std::size_t item) {
        return model.cellForItemAtIndexPath({section, item});
    };
    EXPECT_EQ(std::get<QDChatHeaderCollectionViewCell>(*cell(0, 0)).date, line->date);
    EXPECT_EQ(std::get<QDChatCollectionViewCell>(*cell(0, 1)).message, line);
    EXPECT_EQ(std::get<QDChatCollectionViewCell>(*cell(0, 1)).username, "Ms agent");
    EXPECT_EQ(std::get<QDChatTypingCollectionViewCell>(*cell(1, 0)).type, 2);

    const auto last = std::numeric_limits<std::size_t>::max();
    for (const auto& nowhere : {ChatIndexPath{0, 2}, ChatIndexPath{1, 1}, ChatIndexPath{2, 0},
                                ChatIndexPath{last, 0}, ChatIndexPath{0, last}}) {
        EXPECT_FALSE(model.cellForItemAtIndexPath(nowhere));
        EXPECT_EQ(model.sizeForItemAtIndexPath(nowhere, 320), ChatCellSize());
    }
    EXPECT_EQ(model.numberOfItemsInSection(2), 0);
}

TEST_F(ChatViewModel, HeightOfALineIsThatOfItsParts) {
    const auto message = line({.body = "hello", .from = "room@x/agent"});
    model.addMessage(message);
    message->messageView.emplace().height = 30;
    const auto height = [&] {
        EXPECT_EQ(model.sizeForItemAtIndexPath({0, 1}, 320), message->cellSize);
        EXPECT_EQ(message->cellSize.width, 320);
        return message->cellSize.height;
    };
    EXPECT_EQ(height(), 25 + 30 + 16 + 10);
    chat->avatarSize = 100;
    EXPECT_EQ(height(), 100 + 10);
    message->attachmentView.emplace().height = 100;
    message->kbView.emplace().height = 7;
    EXPECT_EQ(height(), 25 + 105 + 30 + 7 + 20 + 16 + 10);
    message->isMe = true;
    message->chatButtonCollectionView = std::make_shared<QDChatButtonCollectionView>(60);
    EXPECT_EQ(height(), 105 + 30 + 7 + 20 + 16 + 20 + 80);
}

TEST_F(ChatViewModel, LocalHistoryIsKeptByConversationAndLeftOutWhereItIsDamaged) {
    const auto stored = [this] { return chat->defaults->value("QuorrandChatHistory"); };
    chat->commId = "one";
    model.addMessage(at(0min, "not kept"));
    EXPECT_FALSE(stored());

    chat->defaults->setValue("QuorrandChatHistory", {{"one", {{{"text", "old"}}}}});
    model.useLocalHistory(true);
    model.loadHistory();
    EXPECT_EQ(stored(), Json::object());
    EXPECT_EQ(model.messages().size(), 1);
    model.addMessage(at(1min, "a"));
    const auto last = at(2min, "b");
    model.addMessage(last);
    chat->commId = "two";
    model.addMessage(at(3min, "c"));

    chat->commId = "one";
    model.loadHistory();
    ASSERT_EQ(model.messages().size(), 2);
    EXPECT_TRUE(model.messages()[0]->disabled);
    EXPECT_FALSE(model.messages()[1]->disabled);
    EXPECT_TRUE(model.isDuplicateMessage(*last));
    model.addMessage(at(4min, "d"));
    EXPECT_THAT(shown(), ElementsAre(ElementsAre("a", "b", "d")));

    model.clearMessages();
    for (const Json& damaged :
         {Json("text"), Json{{"one", 7}}, Json{{"one", {7, {{"date", "x"}}, nullptr}}}}) {
        chat->defaults->setValue("QuorrandChatHistory", damaged);
        model.loadHistory();
        EXPECT_LE(model.messages().size(), 1U) << damaged;
    }
}

TEST_F(ChatViewModel, ListScrollsOnceToTheNewestLineAfterAReload) {
    struct Picture : QDChatCollectionView::View {
        void reloadData() override { ++reloads; }
        void scrollToItem(const ChatIndexPath& path, bool animated) override {
            EXPECT_TRUE(animated);
            scrolls.push_back(path);
        }
        int reloads = 0;
        std::vector<ChatIndexPath> scrolls;
    };
    const auto picture = std::make_shared<Picture>();
    QDChatCollectionView list(chat);
    list.view = picture;
    chat->typingType = 2;
    list.setup();
    EXPECT_EQ(chat->typingType, 0);
    list.reloadCollectionView();
    list.contentDidChange();
    EXPECT_TRUE(picture->scrolls.empty());

    chat->viewModel->addMessage(at(0min, "a"));
    chat->viewModel->addMessage(at(9min, "b"));
    chat->viewModel->addMessage(at(9min, "c"));
    list.contentDidChange();
    list.reloadCollectionView();
    list.contentDidChange();
    list.contentDidChange();
    EXPECT_EQ(picture->reloads, 2);
    EXPECT_THAT(picture->scrolls, ElementsAre(ChatIndexPath{1, 2}));
}

}  // namespace
}  // namespace supportsdk::test
