#include "supportsdk/knowledge/JourneyModel.h"
#include "supportsdk/knowledge/JourneyViewController.h"
#include "supportsdk/knowledge/JourneysViewController.h"
#include "tests/core/SupportFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;

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

    auto& page = dynamic_cast<JourneyViewController&>(*fakes.presenter->pushed.back());
    EXPECT_EQ(page.initialUrl, "https://j/1");
    page.finish();
    EXPECT_EQ(fakes.presenter->log.back(), "pop Installation");
    page.presentingController = screen;
    page.finish();
    EXPECT_EQ(fakes.presenter->log.back(), "dismiss Installation");
}

TEST_F(JourneysTest, SeveralAreAListAndOneWithoutAnAddressOpensNothing) {
    add(installation);
    add({{"title", 7}});
    screen->viewWillAppear();
    screen->didSelectRow(1);
    screen->didSelectRow(2);
    EXPECT_EQ(pushed(), 0U);
    EXPECT_EQ(screen->textOfRow(0), "Installation");
    EXPECT_EQ(screen->textOfRow(1) + screen->textOfRow(2), "");
    screen->didSelectRow(0);
    EXPECT_EQ(pushed(), 1U);
}

}  // namespace
}  // namespace supportsdk::test
