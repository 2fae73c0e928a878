#include <random>
#include <regex>

#include "supportsdk/core/QDIssue.h"
#include "supportsdk/launcher/CallMeViewController.h"
#include "tests/launcher/ButtonFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CallMeTest : public ButtonTest {
 protected:
    CallMeTest() {
        loadWith({{"callme", {{"enabled", true}}}});
        fakes.progress->shown.clear();
        requests();
        told();
    }

    std::shared_ptr<CallMeViewController> open(const std::optional<std::string>& number) {
        auto dialog = CallMeViewController::create(button->support, button);
        dialog->callbackNumber = number;
        dialog->showFromView();
        dialog->viewDidLoad();
        return dialog;
    }
    void submit() {
        open("617 555 0123")->okButtonClicked();
        // Nothing keeps the dialog by the time of the answer.
        fakes.presenter->presented.clear();
    }
    std::vector<std::string> shown() { return std::exchange(fakes.progress->shown, {}); }
};

TEST(CallMeNumber, IsOneOfTheNorthAmericanPlan) {
    const std::regex plan(
        R"(^(?:\+?1[-. ]?)?\(?([2-9][0-8][0-9])\)?[-. ]?([2-9][0-9]{2})[-. ]?([0-9]{4})$)");
    const std::vector<std::string> seeds = {"6175550123", "+1 (617) 555-0123", "617)5550123",
                                            "+1-287.200 0000", ""};
    std::minstd_rand random(7);  // NOLINT: the same texts each time
    const std::string letters = "+1-. ()23456789x0\n";
    int good = 0;
    for (int round = 0; round < 20000; ++round) {
        auto text = seeds[random() % seeds.size()];
        for (auto changes = random() % 4; changes > 0; --changes) {
            text.replace(random() % (text.size() + 1), random() % 2, random() % 3 != 0,
                         letters[random() % letters.size()]);
        }
        const bool expected = std::regex_match(text, plan);
        good += expected ? 1 : 0;
        ASSERT_EQ(CallMeViewController::validatePhone(text), expected) << '"' << text << '"';
    }
    EXPECT_GT(good, 1000) << "the texts prove nothing";
    for (const auto& other : {std::string("\u0666175550123"), std::string(10'000'000, '6'),
                              std::string("6175550123\0", 11)}) {
        EXPECT_FALSE(CallMeViewController::validatePhone(other)) << other.size();
    }
    EXPECT_FALSE(CallMeViewController::validatePhone(std::nullopt));
}

TEST_F(CallMeTest, TheNumberDecidesOnTheButtonAndNeverOnTheKeystroke) {
    EXPECT_TRUE(open("(617) 555-0123")->isOkButtonEnabled());
    const auto dialog = open(std::nullopt);
    EXPECT_FALSE(dialog->isOkButtonEnabled());
    dialog->okButtonClicked();
    EXPECT_THAT(requests(), IsEmpty());

    dialog->phoneNumberDidChange("6175550123");
    EXPECT_TRUE(dialog->isOkButtonEnabled());
    dialog->phoneNumberDidChange("6175550123x");
    EXPECT_FALSE(dialog->isOkButtonEnabled());
    EXPECT_EQ(dialog->phoneNumberText, "6175550123x");
    dialog->cancelButtonClicked();
    EXPECT_THAT(requests(), IsEmpty());
    EXPECT_EQ(fakes.presenter->log.size(), 1U);
}

TEST_F(CallMeTest, TheDialogGoesFirstAndWhatWasWrittenGoesOut) {
    auto dialog = open("617 555 0123");
    dialog->phoneNumberDidChange("287-200-0000");
    dialog->descriptionDidBeginEditing();
    EXPECT_EQ(dialog->descriptionText, "");
    dialog->descriptionText = "It is dark";
    dialog->descriptionDidEndEditing();
    dialog->descriptionDidBeginEditing();
    dialog->okButtonClicked();
    dialog->okButtonClicked();
    EXPECT_THAT(fakes.presenter->log, ElementsAre("dismiss "));
    EXPECT_THAT(requests(), ElementsAre("POST /issues/create"));
    EXPECT_EQ(bodyOf("/create")["callbackNumber"], "287-200-0000");
    EXPECT_EQ(bodyOf("/create")["description"], "It is dark");

    dialog = open("617 555 0123");
    dialog->descriptionDidBeginEditing();
    dialog->descriptionDidEndEditing();
    EXPECT_TRUE(dialog->isPlaceholder());
    dialog->okButtonClicked();
    EXPECT_EQ(bodyOf("/create")["description"], "");
}

TEST_F(CallMeTest, AnIssueIsStoredAndConfirmed) {
    button->support->features.callMeButtonConfirmation = "We call.";
    submit();
    fakes.http->answerTo("/create", 200, {{"results", Json::array()}});
    EXPECT_THAT(shown(), ElementsAre("status Requesting callback", "dismiss"));
    submit();
    fakes.http->answerTo("/create", 200, {{"results", {{{"id", "81"}}}}});
    EXPECT_THAT(shown(), ElementsAre("status Requesting callback", "dismiss", "info We call.",
                                     "dismiss after 3000"));
    EXPECT_EQ(button->support->currentIssueId, "81");
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(CallMeTest, AFailureReachesTheHostAndAFormerConfigurationStoresNothing) {
    submit();
    fakes.http->answerTo("/create", 500, Json::object());
    EXPECT_THAT(shown(), ElementsAre("status Requesting callback", "dismiss"));
    EXPECT_THAT(told(), ElementsAre("failed: Unable to create issue | Request failed: internal "
                                    "server error (500)"));

    submit();
    const auto former = button->support;
    load();
    fakes.http->answerTo("/create", 200, {{"results", {{{"id", "81"}}}}});
    EXPECT_EQ(former->currentIssueId, std::nullopt);
    EXPECT_THAT(shown(), ElementsAre("status Requesting callback", "dismiss"));
}

}  // namespace
}  // namespace supportsdk::test
