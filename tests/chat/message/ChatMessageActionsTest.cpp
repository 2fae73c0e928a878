#include "supportsdk/chat/ActionPermission.h"
#include "supportsdk/chat/QDChatActionButton.h"
#include "supportsdk/chat/QuorrandChatDelegate.h"
#include "tests/chat/ChatFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;

class ChatMessageActions : public ChatFixture, public testing::Test {
 public:
    static std::vector<std::string> labels(const QuorrandChatMessage& message) {
        std::vector<std::string> all;
        for (const auto& button : message.chatActionButtons) all.push_back(button->label);
        return all;
    }
};

TEST(ActionPermission, NumbersGoWithNumbersAndNamesWithNames) {
    const struct {
        Json required;
        std::optional<Json> granted;
        bool permitted;
    } cases[] = {
        {6, 2, true},
        {6, 8, false},
        {0, 8, true},
        {0, std::nullopt, false},
        {true, 1, true},
        {2.5, 2, true},
        {9223372036854775808U, -1, true},
        {2, -1e300, false},
        {6, Json::array({"6"}), false},
        {"agent,admin", Json::array({"admin"}), true},
        {"agent,admin", Json::array({"adm", 5, nullptr}), false},
        {"agent", 6, false},
        {"agent", std::nullopt, false},
        {"", std::nullopt, true},
        {nullptr, std::nullopt, true},
        {Json::array(), Json::array(), false},
    };
    for (const auto& [required, granted, permitted] : cases)
        EXPECT_EQ(isPermitted(&required, granted), permitted) << required;
    EXPECT_TRUE(isPermitted(nullptr, std::nullopt));
}

TEST_F(ChatMessageActions, ButtonsAreThePermittedEntriesInTheirOrder) {
    chat->userPermissions = 2;
    const auto message = envelope("plain", {{"actions",
                                             {nullptr,
                                              {{"lbl", "hidden"}, {"perms", nullptr}},
                                              {{"lbl", "open"}},
                                              "no entry",
                                              {{"lbl", "refused"}, {"perms", 8}},
                                              {{"lbl", 7}, {"perms", 6}},
                                              {{"lbl", {}}}}}});
    EXPECT_THAT(labels(*message), ElementsAre("open", "7", ""));
    EXPECT_TRUE(message->isChatButtonMessage());
    EXPECT_EQ(message->messageType, ChatMessageType::Text);
}

TEST_F(ChatMessageActions, FreshCopyOfAPressedButtonStartsUnselected) {
    const Json actions = {{"actions", {{{"key", "yes"}, {"lbl", "Yes"}, {"uri", "qd-msg://y"}}}}};
    const auto first = envelope("plain", actions);
    const auto button = first->chatActionButtons.front();
    button->performAction();
    EXPECT_TRUE(button->isSelected);
    button->performAction();
    EXPECT_FALSE(button->isSelected);
    EXPECT_THAT(chat->selectedActions, ElementsAre("yes"));
    EXPECT_TRUE(QDChatActionButton(chat, actions["actions"][0]).isSelected);

    EXPECT_FALSE(envelope("plain", actions)->chatActionButtons.front()->isSelected);
    EXPECT_TRUE(chat->selectedActions.empty());
}

TEST_F(ChatMessageActions, PressReachesTheDelegateUnlessFrozenOrGone) {
    struct Listener : QuorrandChatDelegate {
        void handleButtonAction(const std::optional<std::string>& action,
                                const std::optional<std::string>& label,
                                const Message& message) override {
            heard.push_back(action.value_or("none") + " " + label.value_or("none") + " " +
                            message->text.value_or("none"));
        }
        std::vector<std::string> heard;
    };
    const auto listener = std::make_shared<Listener>();
    chat->delegate = listener;
    auto message = envelope(
        "plain", {{"message", "?"}, {"actions", {{{"lbl", "A"}, {"uri", "x:1"}}, {{"lbl", "B"}}}}});
    const auto buttons = message->chatActionButtons;
    for (const auto& button : buttons) button->performAction();
    EXPECT_THAT(listener->heard, ElementsAre("x:1 A ?", "none B ?"));

    message->disableChatActionButtons();
    for (const auto& button : buttons) button->performAction();
    buttons[1]->isEnabled = true;
    // The load of its avatar holds the line until it has failed.
    fakes.queue->drain();
    message.reset();
    buttons[1]->performAction();
    EXPECT_EQ(listener->heard.size(), 2);
}

}  // namespace
}  // namespace supportsdk::test
