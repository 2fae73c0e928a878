#include <gmock/gmock.h>

#include <limits>

#include "supportsdk/chat/QDChatActionButton.h"
#include "supportsdk/chat/QDChatButtonCollectionView.h"
#include "supportsdk/theme/Colors.h"
#include "tests/chat/ChatFixture.h"

namespace supportsdk::test {
namespace {

TEST(ButtonCollection, OnlyTheFirstMeasureOfItsContentCounts) {
    struct Parent : QDChatButtonCollectionViewDelegate {
        void collectionViewDidFinishReloading(QDChatButtonCollectionView& collection) override {
            heights.push_back(collection.height);
            collection.contentSizeDidChange(1);
        }
        std::vector<double> heights;
    };
    const auto parent = std::make_shared<Parent>();
    QDChatButtonCollectionView collection(88);
    collection.parentDelegate = parent;
    collection.contentSizeDidChange(50);
    EXPECT_EQ(collection.height, 88);
    collection.startObserving();
    collection.contentSizeDidChange(std::numeric_limits<double>::quiet_NaN());
    collection.contentSizeDidChange(-1);
    collection.contentSizeDidChange(50);
    collection.contentSizeDidChange(60);
    EXPECT_THAT(parent->heights, testing::ElementsAre(65));
    EXPECT_EQ(collection.height, 65);
    EXPECT_EQ(collection.buttonForItem(0), nullptr);
    EXPECT_EQ(collection.cornerRadiusForItem(0), 0);
}

class ActionButtons : public ChatFixture, public testing::Test {
 public:
    [[nodiscard]] std::shared_ptr<QDChatActionButton> button(const Json& entry) const {
        return std::make_shared<QDChatActionButton>(chat, entry);
    }
};

TEST_F(ActionButtons, LabelsAreTextsOrNumbersAndTakeTheRoomOfTheirTitle) {
    const double line = 1.2 * QDChatActionButton::titleFontSize;
    const struct {
        Json lbl;
        std::string label;
        double lines;
    } cases[] = {
        {"OK", "OK", 1},
        {7.0, "7", 1},
        {-2.5, "-2.5", 1},
        {1e300, "1e+300", 1},
        {nullptr, "", 1},
        {{"an array"}, "", 1},
        {"two\nlines", "two\nlines", 2},
        // 25 letters fill a line.
        {std::string(25, 'w'), std::string(25, 'w'), 1},
        {std::string(26, 'w'), std::string(26, 'w'), 2},
        {"only the last word is moved", "only the last word is moved", 2},
        {std::string(100'000, ' '), std::string(100'000, ' '), 50},
        {std::string(100'000, '\xFF'), std::string(100'000, '\xFF'), 50},
    };
    for (const auto& [lbl, label, lines] : cases) {
        const auto made = button({{"lbl", lbl}});
        EXPECT_EQ(made->label, label);
        EXPECT_EQ(made->title().plainText(), label);
        EXPECT_NEAR(made->size.height, lines * line, 0.001) << label.substr(0, 30);
        EXPECT_LE(made->size.width, QDChatActionButton::maximumTitleWidth);
    }
}

TEST_F(ActionButtons, EmoticonStandsInPlaceOfATitleIfItCanBeShown) {
    fakes.kitBundle->files["smile.png"] = "picture";
    chat->emoticonsByName = {{"(smile)", "smile.png"}, {"(gone)", "gone.png"}};
    QDChatButtonCollectionView collection;
    for (const auto* label : {"(smile)", "(gone)", "go (smile)"})
        collection.buttons.push_back(button({{"lbl", label}}));
    EXPECT_TRUE(collection.buttons[0]->image);
    EXPECT_TRUE(collection.buttons[0]->title().pieces.empty());
    EXPECT_EQ(collection.sizeForItem(0), QDChatActionButton::emoticonSize);
    EXPECT_EQ(collection.cornerRadiusForItem(0), QDChatActionButton::emoticonSize.height / 2);
    EXPECT_FALSE(collection.buttons[1]->image);
    EXPECT_EQ(collection.buttons[1]->title().plainText(), "(gone)");
    EXPECT_EQ(collection.buttons[2]->title().pieces.size(), 2);
}

TEST_F(ActionButtons, LookFollowsTheSelection) {
    auto& look = chat->appearance;
    look.localColor.alpha = 10;
    look.chatActionButtonBackgroundColor = {1, 2, 3, 40};
    look.chatActionButtonTextColor = {4, 5, 6};
    chat->selectedActions = {"pressed"};
    const auto pressed = button({{"key", "pressed"}, {"lbl", "A"}});
    EXPECT_EQ(pressed->backgroundColor, colorFromRGB(0x147EFB));
    EXPECT_EQ(pressed->title().color, look.chatActionButtonSelectedTextColor);
    pressed->performAction();
    EXPECT_EQ(pressed->backgroundColor, (Color{1, 2, 3}));
    EXPECT_EQ(pressed->borderColor, look.chatActionButtonBorderColor);
    EXPECT_EQ(pressed->title().color, (Color{4, 5, 6}));
    EXPECT_THAT(chat->selectedActions, testing::ElementsAre("pressed"));
}

TEST_F(ActionButtons, TapOutlivesWhatItLeadsTo) {
    struct Listener : ChatActionButtonDelegate {
        void buttonDidPerformAction(QDChatActionButton& button,
                                    const std::string& action) override {
            heard = button.label + " " + action;
        }
        std::string heard;
    };
    const auto listener = std::make_shared<Listener>();
    auto mine = button({{"lbl", "A"}, {"uri", "x:1"}});
    mine->delegate = listener;
    mine->handleButtonAction = [&](const std::string&, const auto&) {
        mine.reset();
        chat.reset();
    };
    const auto tapped = mine.get();
    tapped->performAction();
    EXPECT_EQ(listener->heard, "A x:1");
}

}  // namespace
}  // namespace supportsdk::test
