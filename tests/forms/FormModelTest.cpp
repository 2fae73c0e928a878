#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "supportsdk/forms/QDFormModel.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

QDFormModel formOf(const Json& definitions, const Json& stored = Json::object()) {
    return QDFormModel(Json{{"field_defs", definitions}, {"field_data", stored}});
}

std::vector<std::string> visibleKeys(QDFormModel& form) {
    std::vector<std::string> keys;
    for (const auto& field : form.determineVisibleFields()) keys.push_back(field->rootKey);
    return keys;
}

/// Whether a child with that operator and expected value shows under a parent of that type and
/// value.
bool shows(const char* parentType, const Json& parentValue, const Json& operation,
           const Json& expected) {
    auto form = formOf(
        {{"parent", {{"fieldType", parentType}}},
         {"child",
          {{"parentKey", "parent"}, {"parentOperator", operation}, {"parentValue", expected}}}},
        {{"parent", parentValue}});
    return visibleKeys(form).size() == 2;
}

TEST(FieldVisibilityTest, ComparesByTheTypesOfBothSides) {
    const auto list = [](auto... entries) { return Json::array({entries...}); };
    const auto check = [](const Json& value, const char* operation, const Json& expected) {
        return shows("text", value, operation, expected);
    };
    EXPECT_TRUE(check("10", ">", 9)) << "a numeric text against a number is compared as a number";
    EXPECT_FALSE(check("10", ">", "9")) << "and against a text as a text";
    EXPECT_TRUE(check("no number", "=", 0));
    EXPECT_TRUE(check(16777217, "=", 16777216)) << "single precision";
    EXPECT_TRUE(check(true, "=", 1));
    EXPECT_TRUE(check(0.5, " => ", 0.5));

    EXPECT_TRUE(check(list("a", "b", "a"), "==", "b,a")) << "sets have no order";
    EXPECT_FALSE(check(list("a", "b"), "==", "a, b")) << "parts keep their blanks";
    EXPECT_TRUE(check(1, "=", list(true)));
    EXPECT_TRUE(check(list("a", "b", "c"), "\tCONTAINS ", list("c", "a")));
    EXPECT_TRUE(check("a", "contains", Json::array())) << "nothing is everywhere";
    EXPECT_FALSE(check("Cat", "contains", "cat"));
    EXPECT_TRUE(check("b", "in", "abc"));
    EXPECT_TRUE(check(list("b"), "in", "a,b"));
    EXPECT_FALSE(check(list("b", "x"), "in", "a,b"));

    EXPECT_TRUE(check("x", "!=", Json::object())) << "the negation of what cannot be";
    EXPECT_TRUE(check(Json::object(), "!contains", 3));
    EXPECT_FALSE(check(Json::object(), "<", 3)) << "an order has no negation";
    EXPECT_FALSE(check(Json(), ">=", "x"));
    EXPECT_FALSE(check("x", "no such operator", "x"));
}

TEST(FieldVisibilityTest, AsksTheKindOfParentWhenThereIsNoOperator) {
    EXPECT_TRUE(shows("select", "A", Json(), "a"));
    EXPECT_FALSE(shows("select", "A", "=", "a"));
    EXPECT_TRUE(shows("select", 2, "<null>", Json::array({1, 2})));
    EXPECT_FALSE(shows("number", 0.5, "", Json()));
    EXPECT_TRUE(shows("number", 1.5, "", Json()));
    EXPECT_FALSE(shows("number", "7", "", Json()));
    EXPECT_TRUE(shows("switch", "1", "", Json()));
    EXPECT_TRUE(shows("title", Json(), "", Json()));
    EXPECT_FALSE(shows("text", "a", "", "a"));
}

TEST(FieldVisibilityTest, HidesChildrenOfAnAbsentValueWhateverTheOperator) {
    auto form = formOf(
        {{"parent", {{"fieldType", "text"}, {"value", "default"}}},
         {"child", {{"parentKey", "parent"}, {"parentOperator", "!="}, {"parentValue", "x"}}},
         {"lost", {{"parentKey", "nobody"}}}});
    EXPECT_THAT(visibleKeys(form), ElementsAre("parent"));
    form.reset();
    EXPECT_THAT(visibleKeys(form), ElementsAre("parent", "child")) << "the default is in";
}

TEST(FormModelTest, PutsChildrenBehindTheirParentAgainAndAgain) {
    const Json whenOn = {{"fieldType", "switch"}, {"parentKey", "a"}};
    QDFormModel form(Json{{"fieldDefs",
                           {{"a", {{"fieldType", "switch"}, {"priority", 1}}},
                            {"b", whenOn},
                            {"c", {{"fieldType", "hidden_text"}, {"parentKey", "a"}}},
                            {"z", {{"priority", 0.5}}},
                            {"hidden", {{"fieldType", "hidden_text"}}}}},
                          {"field_defs", {{"former", Json::object()}}}});
    form.sortFields();
    EXPECT_THAT(visibleKeys(form), ElementsAre("z", "a"));
    form.fieldsDict["a"]->valueUpdated = true;
    EXPECT_THAT(visibleKeys(form), ElementsAre("z", "a", "b", "c"));
    EXPECT_EQ(form.fieldsDict["a"]->committedValue, Json(true));
    form.fieldsDict["a"]->valueUpdated = false;
    EXPECT_THAT(visibleKeys(form), ElementsAre("z", "a"));
}

TEST(FormModelTest, CountsGapsUpToTheNextRequiredTitle) {
    const auto required = [](const char* label, const char* type) {
        return Json{{"required", 1}, {"fieldLabel", label}, {"fieldType", type}};
    };
    Json definitions = {{"1", required("A", "text")},
                        {"2", required("B", "number")},
                        {"3", {{"required", "1"}, {"fieldLabel", "a text is no number"}}}};
    const Json stored = {{"1", ""}, {"2", 0}, {"5", Json()}};
    auto gap = formOf(definitions, stored);
    EXPECT_FALSE(gap.isComplete());
    EXPECT_THAT(gap.missingRequiredFields, ElementsAre("A", "B"));

    definitions["4"] = required("T", "title");
    definitions["5"] = required("C", "text");
    auto title = formOf(definitions, stored);
    EXPECT_TRUE(title.isComplete());
    EXPECT_THAT(title.missingRequiredFields, ElementsAre("A", "B"));
}

TEST(FormModelTest, SurvivesFormsThatAreLegalAndAbsurd) {
    for (const auto& odd :
         {Json(), Json("text"), Json::array({1}),
          Json{{"fieldDefs", Json()}, {"field_defs", {{"a", 1}}}},
          Json{{"field_defs", Json::array({1})}, {"field_data", 3}, {"name", 4}}}) {
        QDFormModel form(odd);
        form.reset();
        EXPECT_THAT(form.fields, IsEmpty());
        EXPECT_TRUE(form.isComplete());
    }
    auto form =
        formOf({{"odd", 7},
                {"typed", {{"priority", "x"}, {"required", Json::array()}, {"plOptions", 3}}},
                {"self", {{"parentKey", "self"}}},
                {"left", {{"parentKey", "right"}}},
                {"right", {{"parentKey", "left"}}}});
    form.reset();
    EXPECT_THAT(visibleKeys(form), ElementsAre("odd", "typed"));
    EXPECT_EQ(form.fields.front()->type, 0);
}

/// Recursion down a chain of fields would end in a crash, and work that grows faster than the form
/// would take minutes.
TEST(FormModelTest, IsDoneWithLargeFormsSoon) {
    const auto started = std::chrono::steady_clock::now();
    Json chain = Json::object();
    Json fan = {{"parent", {{"fieldType", "text"}}}};
    Json choices = Json::array();
    for (int index = 0; index < 20'000; ++index) {
        const auto key = std::to_string(index);
        const auto parent = index == 0 ? "" : std::to_string(index - 1);
        chain[key] = {{"fieldType", "title"}, {"parentKey", parent}};
        fan[key] = {
            {"parentKey", "parent"}, {"parentOperator", "contains"}, {"parentValue", "9999"}};
        choices.push_back(key);
    }
    auto deep = formOf(chain);
    EXPECT_EQ(deep.determineVisibleFields().size(), 20'000U);

    auto wide = formOf(fan, {{"parent", choices}});
    EXPECT_EQ(wide.determineVisibleFields().size(), 20'001U);
    wide.fieldsDict["parent"]->valueUpdated = std::string(5'000'000, '9');
    EXPECT_EQ(wide.determineVisibleFields().size(), 1U);
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(20));
}

}  // namespace
}  // namespace supportsdk::test
