#include "supportsdk/chat/QDChatViewModel.h"

#include <random>
#include <set>

#include "supportsdk/chat/QDChatActionButton.h"
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
            if (!hidden.contains(*message->from)) kept.push_back(message);
        }
        std::stable_sort(kept.begin(), kept.end(), [](const auto& left, const auto& right) {
            return left->date < right->date;
        });
        std::vector<QDChatViewModel::Group> groups;
        for (const auto& message : kept) {
            if (groups.empty() || *message->date - *groups.back().back()->date > 120s)
                groups.emplace_back();
            groups.back().push_back(message);
        }
        return groups;
    }

    struct Participants : ChatParticipants {
        [[nodiscard]] bool isParticipant(const std::optional<std::string>& from) const override {
            return !hidden.contains(*from);
        }
        [[nodiscard]] std::uint64_t participantsRevision() const override { return revision; }
        std::set<std::string> hidden;
        std::uint64_t revision = 1;
    };

    std::shared_ptr<Participants> participants = std::make_shared<Participants>();
    std::set<std::string>& hidden = participants->hidden;
    QDChatViewModel model{participants};
};

TEST_F(ChatViewModel, GapIsMeasuredFromTheLineBefore) {
    for (const int minute : {0, 2, 4, 6, 9, 9})
        model.addMessage(at(std::chrono::minutes{minute}, std::to_string(minute) + "a"));
    model.addMessage(at(9min, "9b"));
    EXPECT_THAT(shown(), ElementsAre(ElementsAre("0a", "2a", "4a", "6a"), ElementsAre("9a", "9b")));
}

TEST_F(ChatViewModel, DuplicateChangesNothing) {
    const auto last = at(0min, "hi");
    model.addMessage(last);
    model.addMessage(at(0min, "hi"));
    EXPECT_EQ(model.messages().size(), 1);
    EXPECT_FALSE(last->disabled);
    EXPECT_TRUE(last->chatActionButtons.front()->isEnabled);
    model.addMessage(at(1min, "hi"));
    EXPECT_EQ(model.messages().size(), 2);

    model.clearMessages();
    EXPECT_TRUE(model.messageGroups().empty());
    EXPECT_EQ(model.lastMessage(), nullptr);
    model.addMessage(at(0min, "hi"));
    EXPECT_EQ(model.messages().size(), 1);
}

TEST_F(ChatViewModel, StrangersAreHeldBackUntilTheyMayBeShown) {
    hidden = {"stranger"};
    model.addMessage(at(0min, "hello"));
    const auto held = at(1min, "psst", "stranger");
    model.addMessage(held);
    EXPECT_THAT(shown(), ElementsAre(ElementsAre("hello")));
    EXPECT_EQ(model.lastMessage(), held);

    hidden.clear();
    ++participants->revision;
    model.addMessage(at(1min, "who?"));
    EXPECT_THAT(shown(), ElementsAre(ElementsAre("hello", "psst", "who?")));
}

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

TEST_F(ChatViewModel, UndatedLinesComeFirst) {
    const auto undated = QuorrandChatMessage::createWithTranscript(*chat, {{"message", "old"}});
    model.addMessage(at(0min, "new"));
    model.addMessage(undated);
    EXPECT_THAT(shown(), ElementsAre(ElementsAre("old"), ElementsAre("new")));
}

TEST_F(ChatViewModel, ShortcutsShowWhatThePlainRuleShows) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto below = [&random](unsigned bound) { return random() % bound; };
        const std::array<std::string, 4> senders{"a", "b", "c", "d"};
        model.clearMessages();
        hidden.clear();
        ++participants->revision;
        std::chrono::minutes now = 0min;
        for (int step = 0; step < 120; ++step) {
            const auto& sender = senders[below(4)];
            if (below(10) == 0) {
                ++participants->revision;
                if (!hidden.erase(sender)) hidden.insert(sender);
            }
            now += std::chrono::minutes{below(4)};
            // Room history comes out of order, and anything may come twice.
            const auto minute = below(5) == 0 ? std::chrono::minutes{below(60)} : now;
            const auto before = model.messages().size();
            model.addMessage(at(minute, std::to_string(below(3)), sender));
            // A duplicate does not even regroup.
            if (model.messages().size() == before) continue;
            ASSERT_TRUE(model.messageGroups() == plainRule()) << "step " << step;
        }
        for (const auto& message : model.messages()) {
            const bool isLast = message == model.lastMessage();
            ASSERT_EQ(message->disabled, !isLast);
            ASSERT_EQ(message->chatActionButtons.front()->isEnabled, isLast);
        }
    }
}

}  // namespace
}  // namespace supportsdk::test
