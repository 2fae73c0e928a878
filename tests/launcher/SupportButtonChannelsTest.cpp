#include "supportsdk/forms/QDFormModel.h"
#include "supportsdk/launcher/CallMeViewController.h"
#include "supportsdk/launcher/HistoryViewController.h"
#include "tests/launcher/ButtonFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SupportButtonChannelsTest : public ButtonTest {
 protected:
    SupportButtonChannelsTest() { loadWith(Json::object()); }
    /// Each screen that it keeps knows the platform that knows it.
    ~SupportButtonChannelsTest() override { fakes.presenter->presented.clear(); }
};

TEST_F(SupportButtonChannelsTest, OpensTheScreenOfEachChannel) {
    button->actionSearchKnowledge();
    button->actionHistory();
    EXPECT_EQ(button->support->historyDelegate.lock(),
              std::dynamic_pointer_cast<HistoryViewController>(host->screen));
    button->actionJourneys();
    button->actionSettings();
    EXPECT_THAT(told(), ElementsAre("KBListViewController", "HistoryViewController",
                                    "JourneysViewController", "SettingsViewController"));
    EXPECT_TRUE(button->kbListViewController);

    button->support->features.supportForms = Json::array({"7"});
    requests();
    button->actionForms();
    EXPECT_THAT(requests(), ElementsAre("GET /forms/get/?id=7"));
    EXPECT_THAT(told(), IsEmpty());
    button->support->forms = {std::make_shared<QDFormModel>()};
    button->actionForms();
    button->support->forms.push_back(std::make_shared<QDFormModel>());
    button->actionForms();
    EXPECT_THAT(told(), ElementsAre("FormViewController", "FormListViewController"));
}

TEST_F(SupportButtonChannelsTest, OpensCallMeWithTheNumberThatTheServiceKnows) {
    const std::vector<std::tuple<int, Json, std::optional<std::string>>> cases = {
        {200, {{"callback_number", "555 0123"}}, "555 0123"},
        {200, {{"callback_number", Json()}}, std::nullopt},
        {200, {{"callback_number", {1}}}, std::nullopt},
        {404, Json::object(), std::nullopt}};
    for (const auto& [status, answer, number] : cases) {
        button->actionCallMe();
        fakes.http->answerTo("/getCallbackNumber/", status, answer);
        const auto& stack = dynamic_cast<NavigationController&>(*fakes.presenter->presented.back());
        const auto& screen = dynamic_cast<CallMeViewController&>(*stack.children.front());
        EXPECT_EQ(screen.callbackNumber, number) << answer;
        EXPECT_EQ(screen.title, "Call Me");
    }
    button->actionCallMe();
    load();
    fakes.http->answerTo("/getCallbackNumber/", 200, Json::object());
    EXPECT_EQ(fakes.presenter->presented.size(), 4U) << "asked under the former configuration";
}

TEST_F(SupportButtonChannelsTest, HandsTheCallsRoomToTheBroadcast) {
    button->videoChatGet("c-1");
    EXPECT_THAT(requests(), ElementsAre("POST /chat/get/c-1"));
    fakes.http->answerTo("/chat/get", 200, {{"external_id", "room"}, {"access_token", "token"}});
    auto& suite = fakes.defaults->fake("group.com.goquorrand.BroadcastExtension");
    EXPECT_EQ(suite.values["roomName"], "room");
    EXPECT_EQ(suite.values["token"], "token");
    EXPECT_EQ(suite.flushes, 1);
    EXPECT_THAT(fakes.progress->shown, ElementsAre("dismiss", "info Start screen share now"));

    button->videoChatGet("c-2");
    fakes.http->answerTo("/chat/get", 404, Json::object());
    EXPECT_EQ(suite.values["roomName"], "room");
    button->notifyRoom("other", std::nullopt);
    EXPECT_THAT(suite.keys(), ElementsAre("roomName"));
    EXPECT_EQ(fakes.progress->shown.back(), "error Unable to get comm info.");
}

}  // namespace
}  // namespace supportsdk::test
