#include "supportsdk/core/EventManager.h"
#include "supportsdk/core/EventNames.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/forms/FormListViewController.h"
#include "supportsdk/forms/FormViewController.h"
#include "supportsdk/theme/Appearance.h"
#include "tests/core/SupportFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct CountingView : FormViewController::View {
    void reloadTable() override { ++reloads; }
    int reloads = 0;
};

const Json visit = {
    {"checklist_id", "f-visit"},
    {"name", "Visit"},
    {"field_defs",
     {{"reason",
       {{"fieldLabel", "Reason"},
        {"fieldType", "picklist"},
        {"priority", 1},
        {"required", 1},
        {"plOptions",
         {3,
          {{"label", "Repair"}, {"value", 1}},
          {{"label", "?"}},
          {{"label", "Other"}, {"value", "other"}}}}}},
      {"which",
       {{"fieldLabel", "Which?"},
        {"fieldType", "textarea"},
        {"required", 1},
        {"parentKey", "reason"},
        {"parentOperator", "="},
        {"parentValue", "other"}}},
      {"hidden", {{"parentKey", "count"}, {"parentOperator", "="}, {"parentValue", "never"}}},
      {"count", {{"fieldLabel", "Count"}, {"fieldType", "text"}, {"priority", 2}}},
      {"cost", {{"fieldLabel", "Cost"}, {"fieldType", "currency"}, {"priority", 3}}}}},
    {"field_data", {{"count", 7}, {"cost", 12.5}, {"hidden", "secret"}}}};

class FormScreensTest : public SupportTest {
 protected:
    void open(const Json& form = visit) {
        support = startWithSettings();
        support->identity.membersUsersId = std::optional<std::string>("u-1");
        screen = FormViewController::create(std::make_shared<QDFormModel>(form), support);
        screen->view = picture;
        screen->viewDidLoad();
        screen->viewWillAppear();
    }
    QDFieldViewModel& rows() { return *screen->viewModel; }
    QDFieldModel& field(const std::string& key) {
        return *screen->viewModel->formModel->fieldsDict.at(key);
    }
    void fill() {
        rows().selectOption(field("reason"), 1);
        rows().enterText(field("which"), "The lift");
    }
    Json sentLog() {
        const auto& body = fakes.http->sent.back().request.body;
        return dictionaryForKey(parseJson(toText(body)).value_or(Json()), "checklists_log");
    }

    std::shared_ptr<Support> support;
    std::shared_ptr<FormViewController> screen;
    std::shared_ptr<CountingView> picture = std::make_shared<CountingView>();
};

TEST_F(FormScreensTest, FetchesABatchAndListsItByName) {
    support = startWithSettings({{"supportForms", {"f-1", 2, "f-3"}}});
    const auto list = FormListViewController::create(support);
    list->viewDidLoad();
    EXPECT_EQ(list->title, "Forms");

    support->getSupportForms();
    support->getSupportForms();
    ASSERT_EQ(fakes.http->sent.size(), 4U) << "a running batch is not begun again";
    EXPECT_EQ(fakes.http->request(2).url, "https://api.now.example/sdk/v1/forms/get/?id=2");
    // Settings that change meanwhile do not keep the batch from its end.
    support->features.supportForms = Json::array({"f-9"});
    fakes.http->answer(3, 200, {{"results", {{{"name", "beta"}}, {{"name", "Alpha"}}, 7}}});
    fakes.http->answer(1, 500, Json::object());
    EXPECT_TRUE(support->isFormsRequested);
    fakes.http->answer(2, 200, {{"results", "none"}});
    EXPECT_FALSE(support->isFormsRequested);

    ASSERT_EQ(list->numberOfRows(), 3U);
    EXPECT_EQ(list->textOfRow(0), "") << "a form without a name";
    EXPECT_EQ(list->textOfRow(1), "Alpha");
    EXPECT_EQ(support->currentForm(), support->forms[2]);
    list->didSelectRow(3);
    list->didSelectRow(2);
    ASSERT_EQ(fakes.presenter->pushed.size(), 1U);
    fakes.presenter->pushed[0]->viewDidLoad();
    EXPECT_EQ(fakes.presenter->pushed[0]->title, "beta");
}

TEST_F(FormScreensTest, ShowsRowsAndTakesWhatTheyHaveControlsFor) {
    open();
    ASSERT_EQ(rows().numberOfRows(), 3U);
    EXPECT_EQ(rows().row(0).label, "Reason *");
    EXPECT_EQ(rows().row(1).text, "7");
    const auto cost = rows().row(2);
    EXPECT_EQ(cost.text, "12.5");
    EXPECT_FALSE(cost.isEditable);
    EXPECT_FALSE(rows().enterText(field("cost"), "13"));
    EXPECT_FALSE(rows().setSwitch(field("count"), true));
    EXPECT_FALSE(rows().selectOption(field("reason"), 2)) << "one choice has no value";

    EXPECT_TRUE(rows().enterText(field("count"), "7"));
    EXPECT_EQ(picture->reloads, 0) << "nothing changed";
    EXPECT_TRUE(rows().enterText(field("count"), "99999999999"));
    EXPECT_EQ(field("count").committedValue, Json(2147483647));

    EXPECT_THAT(screen->rightBarButtons, IsEmpty());
    EXPECT_TRUE(rows().selectOption(field("reason"), 0));
    EXPECT_EQ(rows().row(0).text, "Repair");
    EXPECT_EQ(screen->rightBarButtons.size(), 1U);
    EXPECT_TRUE(rows().selectOption(field("reason"), 1));
    EXPECT_EQ(rows().row(1).field->rootKey, "which");
    EXPECT_THAT(screen->rightBarButtons, IsEmpty()) << "the child is required";

    rows().isEditable = false;
    EXPECT_FALSE(rows().selectOption(field("reason"), 0));
}

TEST_F(FormScreensTest, ReadsAControlThatIsStillBeingEdited) {
    open();
    rows().changeText(field("count"), "3");
    rows().save();
    EXPECT_EQ(field("count").value(), Json(true)) << "numbers in text fields become booleans";
    EXPECT_EQ(field("cost").value(), Json(12.5)) << "without a control, the value stays";
}

TEST_F(FormScreensTest, SendsOnceThenForgetsAndLeaves) {
    std::vector<std::string> events;
    const auto observer = EventManager::addObserver([&events](const Notification& notification) {
        for (const auto* name : {event::formStarted, event::formSubmitted, event::formEnded})
            if (notification.object == name) events.emplace_back(name);
    });
    open();
    const auto sent = fakes.http->sent.size();
    rows().selectOption(field("reason"), 1);
    screen->save();
    EXPECT_EQ(fakes.progress->shown.back(), "error Some required fields are empty.\n\nWhich?");
    fill();
    screen->save();
    screen->save();
    ASSERT_EQ(fakes.http->sent.size(), sent + 1) << "two taps";
    EXPECT_EQ(fakes.http->sent.back().request.url,
              "https://api.now.example/sdk/v1/forms/logs_put/?form_id=f-visit");
    EXPECT_EQ(sentLog()["which"], "The lift");
    EXPECT_EQ(sentLog()["members_users_id"], "u-1");
    EXPECT_EQ(sentLog()["checklists_id"], "f-visit");
    EXPECT_TRUE(sentLog()["members_id"].is_null());
    EXPECT_FALSE(sentLog().contains("hidden")) << "only what shows";

    fakes.http->answer(sent, 500, Json::object());
    EXPECT_THAT(fakes.progress->shown.back(), testing::StartsWith("error Request failed"));
    EXPECT_EQ(field("which").value(), Json("The lift")) << "nothing is lost";

    screen->save();
    fakes.http->answer(sent + 1, 200, Json::object());
    EXPECT_EQ(fakes.progress->shown.back(), "info Submission successful");
    EXPECT_EQ(fakes.presenter->log.back(), "pop Visit");
    EXPECT_EQ(field("which").value(), std::nullopt);
    screen->viewWillDisappear();
    EXPECT_THAT(events, ElementsAre(event::formStarted, event::formSubmitted, event::formEnded));
}

TEST_F(FormScreensTest, ForgetsAFormWhoseScreenIsGoneByTheTimeOfTheAnswer) {
    open();
    fill();
    const auto form = screen->viewModel->formModel;
    screen->save();
    screen.reset();
    fakes.http->answer(fakes.http->sent.size() - 1, 200, Json::object());
    EXPECT_EQ(form->fieldsDict.at("which")->value(), std::nullopt);
}

TEST_F(FormScreensTest, SaysOnceThatAFormCannotBeCompletedHere) {
    open({{"checklist_id", "f-x"},
          {"field_defs",
           {{"on", {{"fieldType", "switch"}}},
            {"sign", {{"fieldType", "signature"}, {"required", 1}}},
            {"list", {{"fieldType", "list"}}}}}});
    const auto lines = fakes.log->lines.size();
    EXPECT_THAT(fakes.log->lines.back(), testing::HasSubstr("type 17"));
    rows().setSwitch(field("on"), true);
    EXPECT_EQ(fakes.log->lines.size(), lines);
    EXPECT_THAT(rows().openPicker(field("list")), IsEmpty());
    EXPECT_EQ(fakes.progress->shown.back(), "info No selections available.");
}

TEST_F(FormScreensTest, TakesTheThemesLook) {
    support = startWithSettings();
    support->appearance->configureWithSettings(
        {{"formAppearance", {{"entry", {{"textColor", "#102030"}}}, {"saveButtonText", "Send"}}}});
    support->isSideBySideForms = false;
    screen = FormViewController::create(std::make_shared<QDFormModel>(Json::object()), support);
    screen->viewDidLoad();
    EXPECT_EQ(screen->viewModel->formEntryTextColor, (Color{0x10, 0x20, 0x30, 255}));
    EXPECT_EQ(screen->viewModel->backgroundColor, support->appearance->systemBackgroundColor);
    EXPECT_FALSE(screen->viewModel->isSideBySideLayout);
    ASSERT_EQ(screen->rightBarButtons.size(), 1U) << "a form without fields is complete";
    EXPECT_EQ(screen->rightBarButtons[0].label, "Send");
}

}  // namespace
}  // namespace supportsdk::test
