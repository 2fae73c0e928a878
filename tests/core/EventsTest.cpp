#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "supportsdk/core/EventManager.h"
#include "supportsdk/core/EventNames.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;

struct Listener {
    NotificationCenter::Handler handler() {
        return [this](const Notification& notification) {
            names.push_back(notification.object.text().value_or("?"));
            channel = notification.name;
        };
    }
    std::vector<std::string> names;
    std::string channel;
};

TEST(EventManagerTest, carriesEveryEventOnOneChannelWithItsNameAsTheObject) {
    auto listener = std::make_shared<Listener>();
    EventManager::addObserver(listener, listener->handler());

    EventManager::notify(event::sdkStarted);
    EventManager::notify(request::exit);
    EXPECT_THAT(listener->names, ElementsAre("com.goquorrand.event.sdk.started",
                                             "com.goquorrand.request.supportsdk.exit"));
    EXPECT_EQ(listener->channel, "com.goquorrand.supportsdk.event");

    EventManager::removeObserver(listener.get());
    EventManager::notify(event::sdkEnded);
    EXPECT_EQ(listener->names.size(), 2U);
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

TEST(NotificationCenterTest, objectsAreTextsNumbersOrKeptAlive) {
    NotificationCenter center;
    std::vector<NotificationObject> objects;
    const auto registration =
        center.addObserver("n", [&](const Notification& n) { objects.push_back(n.object); });
    center.post("n");
    center.post("n", std::int64_t{7});
    center.post("n", std::static_pointer_cast<void>(std::make_shared<int>(9)), Json{{"k", 1}});

    ASSERT_EQ(objects.size(), 3U);
    EXPECT_FALSE(objects[0].text() || objects[0].number() || objects[0].object());
    EXPECT_EQ(objects[1].number(), 7);
    EXPECT_FALSE(objects[1] == "7");
    EXPECT_EQ(*std::static_pointer_cast<int>(objects[2].object()), 9);
}

}  // namespace
}  // namespace supportsdk::test
