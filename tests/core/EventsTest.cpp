#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "supportsdk/core/EventManager.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;

TEST(EventManagerTest, tellsWithTheNameAsTheObjectUntilItIsRemoved) {
    const auto heard = std::make_shared<std::vector<std::string>>();
    EventManager::addObserver(heard, [&](const Notification& event) {
        heard->push_back(event.name + " " + event.object.text().value_or("?"));
    });
    EventManager::notify("first");
    EventManager::removeObserver(heard.get());
    EventManager::notify("second");
    EXPECT_THAT(*heard, ElementsAre("com.goquorrand.supportsdk.event first"));
}

TEST(NotificationCenterTest, observersMayEndEachOtherAndAddNewOnesInsideADelivery) {
    NotificationCenter center;
    std::vector<std::string> told;
    Registration second;
    Registration third;
    Registration late;
    auto first = center.addObserver("n", [&](const Notification&) {
        told.emplace_back("first");
        second.reset();
        if (!late) late = center.addObserver("n", [&](const auto&) { told.emplace_back("late"); });
    });
    second = center.addObserver("n", [&](const auto&) { told.emplace_back("second"); });
    third = center.addObserver("n", [&](const auto&) {
        told.emplace_back("third");
        third.reset();
    });

    center.post("n");
    EXPECT_THAT(told, ElementsAre("first", "third"));
    told.clear();
    center.post("n");
    EXPECT_THAT(told, ElementsAre("first", "late"));
}

TEST(NotificationCenterTest, nobodyDanglesWhoeverGoesFirst) {
    auto center = std::make_unique<NotificationCenter>();
    int told = 0;
    auto object = std::make_shared<int>(0);
    // The only owner lets go in the middle of the handler.
    center->addObserver(object, "n", [&](const auto&) {
        object.reset();
        ++told;
    });
    auto registration = center->addObserver("n", [](const auto&) {});
    center->post("n");
    center->post("n");
    EXPECT_EQ(told, 1);

    center.reset();
    registration.reset();
}

}  // namespace
}  // namespace supportsdk::test
