#include "supportsdk/core/EventManager.h"
#include "supportsdk/core/EventNames.h"
#include "supportsdk/knowledge/KBListViewController.h"
#include "supportsdk/knowledge/KBViewController.h"
#include "supportsdk/theme/Appearance.h"
#include "tests/core/SupportFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Listener : SupportDelegate {
    void supportUpdateKBWithModel(const std::shared_ptr<KBViewModel>& model) override {
        log.emplace_back(model ? "tree" : "no tree");
    }
    std::vector<std::string> log;
};

class KBListTest : public SupportTest {
 protected:
    struct Picture : KBListViewController::View {
        void reloadTable() override { ++reloads; }
        int reloads = 0;
    };

    static Json tree() {
        Json all = {{{"id", "0"}, {"type", 2}}};
        for (int level = 1; level < 6; ++level) {
            all.push_back({{"id", std::to_string(level)},
                           {"type", level == 5 ? 0 : 1},
                           {"title", "T" + std::to_string(level)},
                           {"parent_id", std::to_string(level - 1)},
                           {"body", "<p>"}});
        }
        all.push_back({{"title", "W"}, {"parent_id", "0"}, {"url", "https://w"}, {"body", "<b>"}});
        return {{"results", all}};
    }

    static void appear(KBListViewController& screen) {
        screen.viewDidLoad();
        screen.viewWillAppear();
        screen.viewDidAppear();
    }
    std::vector<std::string> shown() { return std::exchange(fakes.progress->shown, {}); }

    std::shared_ptr<Support> support = startWithSettings();
    std::shared_ptr<Picture> picture = std::make_shared<Picture>();
    std::shared_ptr<KBListViewController> screen = KBListViewController::create(support, {});
};

TEST_F(KBListTest, TheListenerHearsWhatBecameOfTheRequest) {
    const auto listener = std::make_shared<Listener>();
    const auto answer = [&](int status, const Json& body) {
        support->getKB(listener);
        EXPECT_TRUE(support->isKBRequested);
        fakes.http->answerTo("/sdk/v1/kb/get", status, body);
        EXPECT_FALSE(support->isKBRequested);
    };
    answer(200, tree());
    answer(200, {{"results", Json::array()}});
    answer(200, {{"results", 7}});
    EXPECT_THAT(shown(), IsEmpty());
    answer(500, tree());
    EXPECT_THAT(shown(), ElementsAre("dismiss"));
    EXPECT_THAT(listener->log, ElementsAre("tree", "no tree", "no tree", "no tree"));
    EXPECT_EQ(support->kbViewModel->numberOfRows(), 6U);
}

TEST_F(KBListTest, TheTextStaysUntilTheRowsAreThere) {
    std::vector<std::string> events;
    const auto observation = EventManager::addObserver([&](const Notification& notification) {
        events.push_back(notification.object.text().value_or(""));
    });
    screen->view = picture;
    appear(*screen);
    EXPECT_THAT(shown(), ElementsAre("status Retrieving"));
    fakes.http->answerTo("/kb/get", 200, tree());
    EXPECT_EQ(picture->reloads, 1);
    EXPECT_THAT(shown(), ElementsAre("dismiss"));
    screen->viewWillDisappear();
    EXPECT_THAT(events, ElementsAre(event::knowledgeStarted, event::knowledgeEnded));

    // Neither an answer without rows nor a screen that leaves early keeps it.
    support->kbViewModel.reset();
    const auto empty = KBListViewController::create(support, {});
    appear(*empty);
    fakes.http->answerTo("/kb/get", 200, Json::object());
    EXPECT_THAT(shown(), ElementsAre("status Retrieving", "dismiss"));
    appear(*empty);
    empty->viewWillDisappear();
    EXPECT_THAT(shown(), ElementsAre("status Retrieving", "dismiss"));
}

TEST_F(KBListTest, ADeepFolderHasAScreenOfItsOwnThatShowsTheWholeTree) {
    support->getKB({});
    fakes.http->answerTo("/kb/get", 200, tree());
    screen->view = picture;
    appear(*screen);
    screen->kbViewModel->didSelectRow(3);
    const auto pushed =
        std::dynamic_pointer_cast<KBListViewController>(fakes.presenter->pushed.back());
    appear(*pushed);
    EXPECT_EQ(pushed->kbViewModel, support->kbViewModel);

    // Back on the first screen, its rows are its own again.
    pushed->kbViewModel->didSelectRow(0);
    const int before = picture->reloads;
    screen->viewWillAppear();
    EXPECT_GT(picture->reloads, before);
    screen->kbViewModel->didSelectRow(0);
    EXPECT_GT(picture->reloads, before + 1);
}

TEST_F(KBListTest, AnArticleOpensByItsAddressOrElseAsItsText) {
    support->getKB({});
    fakes.http->answerTo("/kb/get", 200, tree());
    appear(*screen);
    screen->kbViewModel->didSelectRow(4);
    auto& text = dynamic_cast<BaseWebViewController&>(*fakes.presenter->pushed.back());
    EXPECT_EQ(text.html, "<p>");
    EXPECT_EQ(text.title, "T5");
    text.finish();

    screen->kbViewModel->didSelectRow(5);
    auto& stack = dynamic_cast<NavigationController&>(*fakes.presenter->presented.back());
    auto& browser = dynamic_cast<KBViewController&>(*stack.children.front());
    EXPECT_EQ(browser.initialUrl, "https://w");
    EXPECT_EQ(browser.html, std::nullopt);
    support->appearance->linkAndButtonTintColor = colorFromRGB(0x123456);
    browser.viewWillAppear();
    EXPECT_EQ(browser.barTintColor, colorFromRGB(0x123456)) << "of the theme as it is by then";
    EXPECT_TRUE(browser.isNavigationBarHidden);
    browser.finish();
    EXPECT_THAT(fakes.presenter->log, ElementsAre("pop T5", "dismiss W"));

    for (const auto* address : {"javascript:alert(1)", "file:///etc/passwd", "https://", "w"}) {
        screen->kbViewModel->visibleEntries[5]->url = address;
        screen->kbViewModel->didSelectRow(5);
        EXPECT_EQ(fakes.presenter->alerts.back().title,
                  "Unable to retrieve knowledge base article");
    }
    EXPECT_EQ(fakes.presenter->alerts.size(), 4U);
    EXPECT_EQ(fakes.presenter->presented.size(), 1U);
}

TEST_F(KBListTest, AnAnswerOfAFormerConfigurationShowsNothing) {
    appear(*screen);
    support->retire();
    fakes.http->answerTo("/kb/get", 200, tree());
    EXPECT_EQ(screen->kbViewModel, nullptr);
    EXPECT_EQ(support->kbViewModel, nullptr);
    EXPECT_THAT(shown(), ElementsAre("status Retrieving", "dismiss"));
}

}  // namespace
}  // namespace supportsdk::test
