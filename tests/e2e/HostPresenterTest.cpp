#include "hosts/cli/HostPresenter.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>

#include "hosts/cli/PacedReport.h"
#include "supportsdk/core/Support.h"
#include "tests/support/FakePlatform.h"

namespace supportsdk::host {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

/// Writes down its life.
class PlainScreen : public ScreenController {
 public:
    PlainScreen(std::string name, std::vector<std::string>& log)
        : name_(std::move(name)), log_(log) {}
    [[nodiscard]] std::string_view className() const override { return name_; }
    void viewDidLoad() override { log_.push_back(name_ + " loaded"); }
    void viewWillAppear() override {
        log_.push_back(name_ + " appears");
        if (onAppearance) onAppearance();
    }
    void viewDidAppear() override { log_.push_back(name_ + " there"); }
    void viewWillDisappear() override { log_.push_back(name_ + " goes"); }
    void viewDidDisappear() override { log_.push_back(name_ + " gone"); }

    std::function<void()> onAppearance;

 private:
    std::string name_;
    std::vector<std::string>& log_;
};

class HostPresenterTest : public testing::Test {
 protected:
    HostPresenterTest() {
        if (pipe2(pipe_.data(), O_NONBLOCK) != 0) ADD_FAILURE();
        presenter = std::make_shared<HostPresenter>(std::make_shared<Reports>(pipe_[1]), queue);
    }
    ~HostPresenterTest() override {
        close(pipe_[0]);
        close(pipe_[1]);
    }

    std::shared_ptr<PlainScreen> screen(const std::string& name) {
        return std::make_shared<PlainScreen>(name, log);
    }
    std::shared_ptr<ScreenController> top() {
        return Support::topViewController(presenter->rootController());
    }
    /// What was reported since the latest call: "kind class".
    std::vector<std::string> reported() {
        std::array<char, 65536> bytes{};
        const auto count = read(pipe_[0], bytes.data(), bytes.size());
        std::istringstream lines(std::string(bytes.data(), count > 0 ? count : 0));
        std::vector<std::string> all;
        for (std::string line; std::getline(lines, line);) {
            const auto report = Json::parse(line);
            all.push_back(report.value("is", "") + " " + report.value("class", ""));
        }
        return all;
    }

    std::vector<std::string> log;
    std::shared_ptr<test::FakeMainQueue> queue = std::make_shared<test::FakeMainQueue>();
    std::shared_ptr<HostPresenter> presenter;

 private:
    std::array<int, 2> pipe_{};
};

TEST_F(HostPresenterTest, DismissesAPresentedLayerWithAllThatIsOnIt) {
    const auto chat = screen("Chat");
    const auto web = screen("Web");
    const auto more = screen("More");
    const auto navigation = std::make_shared<NavigationController>();
    navigation->children = {web};
    presenter->display(chat);
    presenter->present(navigation, chat.get());
    presenter->push(more, *web);
    EXPECT_EQ(top(), more);
    EXPECT_TRUE(web->presentingController.lock());
    EXPECT_FALSE(more->presentingController.lock());
    log.clear();
    presenter->dismiss(*web);
    EXPECT_EQ(top(), chat);
    EXPECT_THAT(log, ElementsAre("More goes", "Chat appears", "More gone", "Chat there"));
    presenter->dismiss(*web);  // gone already
    presenter->present(more, nullptr);
    presenter->dismiss(*chat);  // and what lies over it
    EXPECT_FALSE(presenter->top());
    EXPECT_THAT(reported(), ElementsAre("screen Chat", "screen Web", "screen More", "left More",
                                        "left Web", "screen More", "left More", "left Chat"));
}

TEST_F(HostPresenterTest, ReportsAScreenBeforeTheOneThatItOpensAsItAppears) {
    const auto detail = screen("Detail");
    const auto list = screen("List");
    list->onAppearance = [&] { presenter->push(detail, *list); };
    presenter->display(list);
    EXPECT_EQ(top(), detail);
    EXPECT_THAT(log, ElementsAre("List loaded", "List appears", "Detail loaded", "List goes",
                                 "Detail appears", "List gone", "Detail there"));
    EXPECT_THAT(reported(), ElementsAre("screen List", "screen Detail"));
    presenter->back();  // and the list opens it again
    EXPECT_EQ(top(), detail);
    EXPECT_THAT(reported(), ElementsAre("left Detail", "screen Detail"));
}

TEST_F(HostPresenterTest, ClosesAnAlertBeforeItsChoiceOpensTheNext) {
    std::vector<std::string> typed;
    const auto second = [&](const auto& fields) {
        typed = fields;
        presenter->showAlert({"Second", "", {}, {{"OK", ActionStyle::plain, nullptr}}});
    };
    presenter->showAlert({"First", "", {{"Name", ""}}, {{"Go", ActionStyle::plain, second}}});
    EXPECT_FALSE(presenter->choices().choose("OK"));
    EXPECT_FALSE(presenter->choices().type("x", "Street"));
    EXPECT_TRUE(presenter->choices().type("Jo", std::nullopt));
    EXPECT_TRUE(presenter->choices().choose("Go"));
    EXPECT_THAT(typed, ElementsAre("Jo"));
    EXPECT_FALSE(presenter->choices().choose("Go"));
    EXPECT_TRUE(presenter->choices().choose("OK"));
    EXPECT_FALSE(presenter->choices().choose("OK"));
}

TEST(PacedReport, ReportsAtOnceAndThenAsOftenAsItPays) {
    std::chrono::steady_clock::time_point now;
    const auto queue = std::make_shared<test::FakeMainQueue>();
    int reports = 0;
    PacedReport paced(
        queue, [&] { ++reports, now += 10ms; }, 0ms, [&] { return now; });
    paced.ask();
    EXPECT_EQ(reports, 1);
    for (int change = 0; change < 100; ++change) paced.ask();
    EXPECT_EQ(queue->pendingTimers(), 1U);
    queue->advance(39ms);
    EXPECT_EQ(reports, 1);
    queue->advance(1ms);
    EXPECT_EQ(reports, 2) << "the last state is never held back for good";
    now += 40ms;
    paced.ask();
    EXPECT_EQ(reports, 3);
}

TEST(PacedReport, KeepsAPauseAfterQuickReportsTooAndHoldsTheLastNoLongerThanItMay) {
    std::chrono::steady_clock::time_point now;
    const auto queue = std::make_shared<test::FakeMainQueue>();
    int reports = 0;
    PacedReport paced(
        queue, [&] { ++reports; }, 250ms, [&] { return now; });
    paced.finish();
    EXPECT_EQ(reports, 0);
    paced.ask();
    paced.ask();
    queue->advance(249ms);
    EXPECT_EQ(reports, 1);
    paced.finish();
    EXPECT_EQ(reports, 2);
    queue->advance(1s);
    EXPECT_EQ(reports, 2) << "it does not come twice";
}

}  // namespace
}  // namespace supportsdk::host
