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
    for (const auto* good :
         {"6175550123", "(617)5550123", "+16175550123", "1 (617) 555-0123", "+1-617.555 0123",
          "617-555-0123", "(6175550123", "617)5550123", "1(287)200-0000"}) {
        EXPECT_TRUE(CallMeViewController::validatePhone(good)) << good;
    }
    for (const auto* bad :
         {"", "+", "1", "+6175550123", "1175550123", "6975550123", "6171550123", "617555012",
          "61755501234", "617  555 0123", "617-555-012x", " 6175550123", "6175550123\n",
          "((617)5550123", "+1+16175550123", "617/555/0123", "\u0666175550123"}) {
        EXPECT_FALSE(CallMeViewController::validatePhone(bad)) << bad;
    }
    EXPECT_FALSE(CallMeViewController::validatePhone(std::nullopt));
    EXPECT_FALSE(CallMeViewController::validatePhone(std::string(10'000'000, '6')));
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
