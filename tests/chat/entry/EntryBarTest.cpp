#include <gmock/gmock.h>

#include "supportsdk/chat/QDChatMessageEntryView.h"
#include "tests/chat/ChatFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Answers as a chat screen does: the list rests just above a bar whose top is at 500.
struct Screen : QDChatMessageEntryViewDelegate {
    void didChangeText(const std::string& text) override { texts.push_back(text); }
    void didShowSuggestions(QDChatAutocompletionTableView& list) override { list.restAbove(500); }
    std::vector<std::string> texts;
};

class EntryBar : public ChatFixture, public testing::Test {
 public:
    EntryBar() {
        bar->delegate = screen;
        bar->messageTextView->setFrame({40, 0, 240, 40});
    }

    void setAliases(const std::vector<std::string>& aliases) const {
        Json people = Json::object();
        for (const auto& alias : aliases) people["key " + alias] = {{"alias", alias}};
        chat->setParticipantsEligible(people);
    }
    /// What the list shows for this text.
    [[nodiscard]] std::vector<std::string> suggestions(const std::string& text) const {
        bar->setText(text);
        return list.isHidden ? std::vector<std::string>{} : list.suggestionOptions();
    }
    void choose(const std::string& text, std::size_t row) const {
        bar->setText(text);
        list.didSelectRow(row);
    }

    std::shared_ptr<Screen> screen = std::make_shared<Screen>();
    std::shared_ptr<QDChatMessageEntryView> bar =
        QDChatMessageEntryView::messageEntryViewWithFrame(chat);
    QDChatAutocompletionTableView& list = *bar->autocompletionTableView;
};

TEST_F(EntryBar, SuggestsWhatContainsTheLastWord) {
    setAliases({"@Ärzte", "@bo", "mail@home", "zoe"});
    const struct {
        std::string text;
        std::vector<std::string> suggested;
    } cases[] = {
        {"@", {"@all", "@bo", "@Ärzte", "mail@home"}},
        {"@AL", {"@all"}},
        {"@ALL", {}},
        {"@äRZ", {"@Ärzte"}},
        {"ask @bo", {}},
        {"ask  @b", {"@bo"}},
        {" \t@b \t ", {"@bo"}},
        {"\xC2\xA0@b\xE3\x80\x80", {"@bo"}},
        {"@b\n", {}},
        {"@bo there", {}},
        {"first\n@b", {}},
        {"zo", {}},
        {"(no", {}},
        {"\xFF@\xC3", {}},
        {"@" + std::string(100'000, 'b'), {}},
        {"", {}},
    };
    for (const auto& [text, suggested] : cases) {
        EXPECT_THAT(suggestions(text), testing::UnorderedElementsAreArray(suggested)) << text;
        EXPECT_EQ(bar->isSendEnabled(), !text.empty());
        EXPECT_EQ(screen->texts.back(), text);
    }
}

TEST_F(EntryBar, ListRestsOnTheBarHoweverManyRowsItHas) {
    for (const std::size_t rows : {1, 2, 5, 6}) {
        std::vector<std::string> aliases;
        for (std::size_t row = 0; row < rows; ++row) aliases.push_back("@x" + std::to_string(row));
        setAliases(aliases);
        EXPECT_EQ(suggestions("@x").size(), rows);
        const double high = rows < 5 ? static_cast<double>(rows) * 30 : 150;
        EXPECT_EQ(list.frame, (ChatFrame{40, 497 - high, 240, high})) << rows;
        // The same edge without the screen's help.
        EXPECT_TRUE(list.findSuggestionsForTextView(*bar->messageTextView));
        EXPECT_EQ(list.frame, (ChatFrame{40, 497 - high, 240, high})) << rows;
    }
}

TEST_F(EntryBar, ParticipantsMayChangeAndAChoiceReplacesTheLastWordOnly) {
    EXPECT_THAT(suggestions("@b"), IsEmpty());
    setAliases({"@bo", "@bob"});
    choose("one two  @B", 1);
    EXPECT_EQ(bar->text(), "one two  @bob");
    EXPECT_EQ(screen->texts.back(), "one two  @bob");
    EXPECT_TRUE(list.isHidden);
    choose("@b", 0);
    EXPECT_EQ(bar->text(), "@bo");
    choose("@b ", 0);
    EXPECT_EQ(bar->text(), "@b @bo") << "a blank at the end leaves an empty last piece";
    choose("@b", 9);
    EXPECT_EQ(bar->text(), "@b");

    bar->reset();
    EXPECT_TRUE(list.isHidden);
    EXPECT_FALSE(bar->isSendEnabled());
    bar->addText("@b");
    EXPECT_TRUE(list.isHidden);
    EXPECT_TRUE(bar->isSendEnabled());
}

TEST_F(EntryBar, EmoticonsShowWithTheirPictures) {
    fakes.kitBundle->files["smile.png"] = "picture";
    chat->emoticonsByName = {{"(Smile)", "smile.png"}, {"(gone)", "gone.png"}, {":)", "smile.png"}};
    EXPECT_THAT(suggestions("(sM"), ElementsAre("(Smile)"));
    const auto row = list.rowAt(0);
    EXPECT_EQ(row->text, "Smile");
    EXPECT_EQ(row->detail, "(Smile)");
    EXPECT_TRUE(row->image);
    EXPECT_FALSE(list.rowAt(1));
    EXPECT_THAT(suggestions("("), ElementsAre("(Smile)", "(gone)"));
    EXPECT_FALSE(list.rowAt(1)->image);
    EXPECT_THAT(suggestions("@a"), ElementsAre("@all"));
    EXPECT_EQ(list.rowAt(0)->detail, std::nullopt);
    EXPECT_THAT(suggestions("(nothing"), IsEmpty());
    EXPECT_FALSE(list.rowAt(0)->image) << "the row of another kind is still there, hidden";
}

TEST_F(EntryBar, ListenerMayEmptyOrDropTheBar) {
    struct Rude : Screen {
        void didChangeText(const std::string& text) override {
            if (!text.empty()) (*bar)->reset();
            bar->reset();
        }
        std::shared_ptr<QDChatMessageEntryView>* bar = nullptr;
    };
    const auto rude = std::make_shared<Rude>();
    auto mine = QDChatMessageEntryView::messageEntryViewWithFrame(chat);
    mine->delegate = rude;
    rude->bar = &mine;
    const auto text = mine->messageTextView;
    chat.reset();
    text->setText("@a");
    EXPECT_FALSE(mine);
    EXPECT_EQ(text->text(), "");
}

}  // namespace
}  // namespace supportsdk::test
