#include "supportsdk/chat/ChatViewController.h"
#include "supportsdk/core/QDIssue.h"
#include "supportsdk/launcher/RatingViewController.h"
#include "supportsdk/theme/Appearance.h"
#include "tests/launcher/ButtonFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RatingTest : public ButtonTest {
 protected:
    RatingTest() {
        loadWith({{"history", {{"enabled", true}}}});
        support()->rateableIssueId = "55";
        fakes.progress->shown.clear();
    }

    std::shared_ptr<Support>& support() { return button->support; }
    std::vector<std::string> shown() { return std::exchange(fakes.progress->shown, {}); }

    /// The dialog that was presented last; null when there is none. Nothing else keeps it then.
    std::shared_ptr<RatingViewController> takeDialog() {
        if (fakes.presenter->presented.empty()) return nullptr;
        const auto stack = std::exchange(fakes.presenter->presented, {}).back();
        const auto& children = dynamic_cast<NavigationController&>(*stack).children;
        const auto dialog = std::dynamic_pointer_cast<RatingViewController>(children.front());
        if (dialog) dialog->viewDidLoad();
        return dialog;
    }
    std::shared_ptr<RatingViewController> open() {
        support()->displayRatingScreenFromButton(button);
        return takeDialog();
    }
};

TEST_F(RatingTest, OnlyTheLastStarTakesItselfBack) {
    const std::vector<std::pair<std::vector<std::size_t>, std::uint64_t>> cases = {
        {{}, 0},        {{2, 2}, 3},    {{4, 4}, 4}, {{4, 4, 4}, 5}, {{4, 1}, 2},
        {{4, 4, 3}, 4}, {{0, 0, 0}, 1}, {{5}, 0},    {{3, 99}, 4}};
    for (const auto& [taps, stars] : cases) {
        const auto dialog = open();
        for (const auto tag : taps) dialog->ratingButtonClicked(tag);
        EXPECT_EQ(dialog->ratingValue, stars);
        for (std::size_t star = 0; star < 5; ++star)
            EXPECT_EQ(dialog->ratingButtons[star], star < stars);
    }
}

TEST_F(RatingTest, WhatWasEnteredGoesOutOnceAndTheIssueCountsAsRated) {
    auto dialog = open();
    const auto record = dialog->issue = std::make_shared<QDIssue>();
    dialog->ratingButtonClicked(3);
    dialog->descriptionDidBeginEditing();
    EXPECT_EQ(dialog->descriptionTextColor(), support()->appearance->labelColor);
    dialog->descriptionText = "Kind";
    dialog->done();
    dialog->okButtonClicked();
    dialog->enableOkButton(true);
    dialog->okButtonClicked();
    dialog.reset();
    EXPECT_THAT(fakes.presenter->log, ElementsAre("dismiss "));
    EXPECT_THAT(requests(), ElementsAre("POST /issues/rate/55"));
    EXPECT_EQ(bodyOf("/rate/55"), Json({{"nps_rating", 0}, {"tech_rating", 4}, {"notes", "Kind"}}));

    fakes.http->answerTo("/rate/55", 200, {{"results", {Json::object()}}});
    EXPECT_THAT(shown(), ElementsAre("status Rating your support experience", "dismiss"));
    EXPECT_TRUE(record->isRated);
    EXPECT_EQ(support()->rateableIssueId, std::nullopt);
    EXPECT_THAT(requests(), ElementsAre("GET /issues/history?members_locations_id=l"));
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(RatingTest, UntilTheServiceTakesARatingTheIssueStaysRateable) {
    open()->cancelButtonClicked();
    EXPECT_THAT(requests(), IsEmpty());
    open()->okButtonClicked();
    EXPECT_EQ(bodyOf("/rate/55"), Json({{"nps_rating", 0}, {"tech_rating", 0}, {"notes", ""}}));
    fakes.http->answerTo("/rate/55", 200, {{"results", Json::array()}});
    EXPECT_THAT(told(), IsEmpty());
    open()->okButtonClicked();
    fakes.http->answerTo("/rate/55", 202, {{"message", "Come back later"}});
    EXPECT_THAT(told(), ElementsAre("failed: Unable to rate issue | Come back later"));
    EXPECT_EQ(support()->rateableIssueId, "55");
    EXPECT_THAT(requests(), ElementsAre("POST /issues/rate/55", "POST /issues/rate/55"));

    // An answer must not take the rating of another issue away, nor act for another customer.
    open()->okButtonClicked();
    support()->rateableIssueId = "56";
    fakes.http->answerTo("/rate/55", 200, {{"results", {Json::object()}}});
    EXPECT_EQ(support()->rateableIssueId, "56");
    open()->okButtonClicked();
    const auto former = support();
    load();
    fakes.http->answerTo("/rate/56", 500, Json::object());
    EXPECT_THAT(told(), IsEmpty());
    EXPECT_EQ(fakes.progress->shown.back(), "dismiss");
}

TEST_F(RatingTest, WithoutAnIssueTheHostIsTold) {
    const auto dialog = open();
    support()->rateableIssueId.reset();
    dialog->okButtonClicked();
    fakes.queue->drain();
    EXPECT_THAT(requests(), IsEmpty());
    EXPECT_THAT(shown(), ElementsAre("status Rating your support experience", "dismiss"));
    EXPECT_THAT(told(), ElementsAre("failed: Unable to rate issue | There is no issue to rate."));
}

TEST_F(RatingTest, FollowsAChatOfThePresentConfiguration) {
    const auto leave = [this] {
        button->displayChatWithIssue(std::make_shared<QDIssue>(Json{{"id", "55"}}));
        button->chatViewController->viewDidDisappear();
    };
    support()->rateableIssueId.reset();
    leave();
    EXPECT_EQ(takeDialog(), nullptr);
    support()->rateableIssueId = "55";
    leave();
    EXPECT_NE(takeDialog(), nullptr);
    button->chatViewController->isReadOnly = true;
    button->chatViewController->viewDidDisappear();
    EXPECT_EQ(takeDialog(), nullptr);
    button->chatViewController->isReadOnly = false;
    load();
    button->chatViewController->viewDidDisappear();
    EXPECT_EQ(takeDialog(), nullptr);
}

}  // namespace
}  // namespace supportsdk::test
