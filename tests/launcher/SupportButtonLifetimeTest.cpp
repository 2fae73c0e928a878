#include "tests/launcher/ButtonFixture.h"

namespace supportsdk::test {
namespace {

/// A host that lets go of the button in the callback `deadline`, however it comes about. The
/// sanitizers watch.
class SupportButtonLifetimeTest : public ButtonTest, public testing::WithParamInterface<int> {
 protected:
    SupportButtonLifetimeTest() {
        host->onEach = [this, left = GetParam()]() mutable {
            if (left-- == 0) button.reset();
        };
    }

    /// Does `work` while the button is there, as a host with a raw pointer from its shared one.
    void whileAlive(const std::function<void(SupportButton&)>& work) {
        if (button) work(*button);
    }
    void answer(const std::string& part, int status, const Json& body) {
        for (const auto& sent : fakes.http->sent) {
            if (sent.completion && sent.request.url.find(part) != std::string::npos) {
                return fakes.http->answerTo(part, status, body);
            }
        }
    }
};

TEST_P(SupportButtonLifetimeTest, SurvivesItsReleaseInsideAnyCallback) {
    const Json channels = {{"chat", {{"enabled", true}}}, {"journeys", {{"enabled", true}}}};
    whileAlive([](auto& it) { it.clicked(); });
    whileAlive([&](auto& it) { it.loadConfigurationJSON(configuration, Json{{"a", "b"}}); });
    answer("/app/get", 500, Json::object());
    whileAlive([&](auto& it) { it.loadConfigurationJSON(configuration, Json{{"a", "b"}}); });
    answer("/app/get", 200, settings(channels));
    answer("/journeys", 200, Json::object());
    answer("/customers/resolve", 500, Json::object());
    whileAlive([](auto& it) { it.getCustomerWithInformation(Json{{"a", "b"}}); });
    answer("/customers/resolve", 200,
           {{"members_id", "m"}, {"members_users_id", "u"}, {"members_locations_id", "l"}});
    whileAlive([](auto& it) { it.getCustomerWithInformation(Json::object()); });
    whileAlive([](auto& it) { it.clicked(); });
    whileAlive([](auto& it) { it.menuStyle = 0, it.displayPopupMenu(); });
    NotificationCenter::shared().post("com.goquorrand.chat.unreadcountupdated", 4);
    whileAlive([](auto& it) { it.actionChat(); });
    answer("/create", 500, Json::object());
    whileAlive([](auto& it) { it.actionChat(); });
    answer("/create", 200, {{"results", {{{"id", "5"}}}}});
    whileAlive([](auto& it) { it.actionSearchKnowledge(); });
    whileAlive([](auto& it) { it.advertiseServiceWithPublicData(Json(), Json()); });
    whileAlive([](auto& it) { it.netServiceDidPublish(*it.service); });
    fakes.urlOpener->works = false;
    whileAlive([](auto& it) { it.actionWeb(); });
    fakes.queue->drain();
    EventManager::notify("com.goquorrand.request.supportsdk.exit");

    // Released in each of the sixteen callbacks in turn, and once not at all.
    EXPECT_EQ(button == nullptr, GetParam() < 16) << testing::PrintToString(host->told);
}

INSTANTIATE_TEST_SUITE_P(EachCallback, SupportButtonLifetimeTest, testing::Range(0, 17));

class SupportButtonReleaseTest : public ButtonTest {};

TEST_F(SupportButtonReleaseTest, LeavesNothingBehindWhileRequestsAreInFlight) {
    loadWith({{"chat", {{"enabled", true}}}, {"journeys", {{"enabled", true}}}});
    button->getCustomerWithInformation({{"a", "b"}});
    button->actionChat();
    const std::weak_ptr<SupportButton> watched = button;
    const std::weak_ptr<Support> support = button->support;
    button.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_TRUE(support.expired());
    told();
    for (std::size_t i = 0; i < fakes.http->sent.size(); ++i) {
        if (fakes.http->sent[i].completion) fakes.http->answer(i, 200, {{"results", {1}}});
    }
    EventManager::notify("com.goquorrand.request.supportsdk.exit");
    EXPECT_THAT(told(), testing::IsEmpty());
    EXPECT_EQ(fakes.progress->shown.back(), "dismiss") << "the text would stay for ever";
}

}  // namespace
}  // namespace supportsdk::test
