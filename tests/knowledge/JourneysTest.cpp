#include "supportsdk/knowledge/JourneyModel.h"
#include "supportsdk/knowledge/JourneyViewController.h"
#include "supportsdk/knowledge/JourneysViewController.h"
#include "tests/core/SupportFixture.h"

namespace supportsdk::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class JourneysTest : public SupportTest {
 protected:
    void add(const Json& journey) {
        support->journeys.push_back(std::make_shared<JourneyModel>(journey));
    }
    std::size_t pushed() const { return fakes.presenter->pushed.size(); }

    std::shared_ptr<Support> support = startWithSettings();
    std::shared_ptr<JourneysViewController> screen = JourneysViewController::create(support);
    const Json installation = {{"title", "Installation"}, {"journey_url", "https://j/1"}};
};

TEST_F(JourneysTest, ASingleJourneyOpensAtEachAppearanceUnlessTheOpenerSaysOtherwise) {
    add(installation);
    screen->viewDidLoad();
    EXPECT_THAT(fakes.progress->shown, ElementsAre("dismiss"));
    screen->viewWillAppear();
    screen->viewWillAppear();
    EXPECT_EQ(pushed(), 2U);

    screen->isJourneyShowing = true;
    screen->viewWillAppear();
    EXPECT_THAT(fakes.presenter->log, ElementsAre("pop Journeys"));
    screen->viewWillAppear();
    EXPECT_EQ(pushed(), 3U);
    screen->viewWillDisappear();
    EXPECT_TRUE(screen->isNavigationBarHidden);
    screen->back();
    EXPECT_EQ(fakes.presenter->log.back(), "pop Journeys");

    auto& page = dynamic_cast<JourneyViewController&>(*fakes.presenter->pushed.back());
    EXPECT_EQ(page.initialUrl, "https://j/1");
    page.finish();
    EXPECT_EQ(fakes.presenter->log.back(), "pop Installation");
    page.presentingController = screen;
    page.finish();
    EXPECT_EQ(fakes.presenter->log.back(), "dismiss Installation");
}

TEST_F(JourneysTest, SeveralAreAListAndWhatIsNoPageOfTheWebDoesNotOpen) {
    add(installation);
    add({{"title", 7}});
    screen->viewWillAppear();
    screen->didSelectRow(1);
    support->journeys[1]->journey_url = "file:///etc/passwd";
    screen->didSelectRow(1);
    screen->didSelectRow(2);
    EXPECT_EQ(pushed(), 0U);
    EXPECT_THAT(fakes.progress->shown,
                ElementsAre("error Unable to open webpage", "error Unable to open webpage"));
    EXPECT_EQ(screen->textOfRow(0), "Installation");
    EXPECT_EQ(screen->textOfRow(1) + screen->textOfRow(2), "");
    screen->didSelectRow(0);
    EXPECT_EQ(pushed(), 1U);
}

TEST_F(JourneysTest, OneOfTheTwoIdentifiersIsSentAndTheLatestAnswerCounts) {
    int completions = 0;
    const auto fetch = [&] { support->getJourneysWithCompletion([&] { ++completions; }); };
    const auto sent = [&] { return fakes.http->sent.back().request.url; };
    fetch();
    EXPECT_THAT(sent(), EndsWith("/sdk/v1/journeys/data"));
    support->identity.membersId = IdentityValue("m 1");
    fetch();
    EXPECT_THAT(sent(), EndsWith("/data?members_id=m%201"));
    const Json null;
    support->identity.membersLocationsId = IdentityValue(&null);
    fetch();
    EXPECT_THAT(sent(), EndsWith("/data?members_locations_id"));

    fakes.http->answer(3, 200, {{"results", {installation, Json("text")}}});
    EXPECT_EQ(support->journeys.size(), 2U);
    fakes.http->answer(1, 200, {{"results", {installation}}});
    fakes.http->answer(2, 500, Json::object());
    EXPECT_EQ(support->journeys.size(), 2U);
    EXPECT_EQ(completions, 3);
    fetch();
    EXPECT_THAT(support->journeys, IsEmpty());
    fakes.http->answer(4, 500, Json::object(), {{"X-Quorrand-Token", "secret"}});
    EXPECT_THAT(fakes.log->lines.back(), AllOf(HasSubstr("500"), Not(HasSubstr("secret"))));
    EXPECT_EQ(completions, 4);
}

}  // namespace
}  // namespace supportsdk::test
