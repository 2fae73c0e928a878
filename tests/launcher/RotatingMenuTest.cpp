#include "supportsdk/launcher/RotatingMenu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

namespace supportsdk::test {
namespace {

using namespace std::chrono_literals;
using std::numbers::pi;
using testing::ElementsAre;

/// On the rim of a wheel of radius 1 around the origin.
WheelPoint at(double angle) {
    return {std::sin(angle), -std::cos(angle)};
}

class RotatingMenuTest : public testing::Test, public RotatingMenuDelegate {
 protected:
    RotatingMenuTest() { menu->delegate = listener; }

    void rotatingMenuDidSelectItem(RotatingMenu& wheel, std::size_t index) override {
        EXPECT_EQ(wheel.selectedIndex(), index);
        EXPECT_FALSE(wheel.isTurning());
        selected.push_back(index);
        if (onSelect) onSelect();
    }
    /// A finger that turns the wheel at a steady speed for a tenth of a second.
    void flick(double from, double radiansPerSecond) {
        EXPECT_TRUE(menu->beginDrag(at(from), 1s));
        for (int i = 1; i <= 10; ++i)
            menu->moveDrag(at(from + radiansPerSecond * 0.01 * i), 1s + i * 10ms);
        menu->endDrag(1100ms);
    }
    std::vector<std::size_t> takeSelected() { return std::exchange(selected, {}); }

    std::vector<std::size_t> selected;
    std::function<void()> onSelect;
    std::shared_ptr<RotatingMenu> menu = RotatingMenu::create();
    std::shared_ptr<RotatingMenuDelegate> listener{this, [](auto*) {}};
};

TEST_F(RotatingMenuTest, ItemsFollowEachOtherClockwiseFromTheTop) {
    menu->setItems({{"a", {}}, {"b", {}}, {"c", {}}, {"d", {}}});
    const auto right = menu->slice(1)->pointAt({10, 10}, 5);
    EXPECT_NEAR(right.x, 15, 1e-9);
    EXPECT_NEAR(right.y, 10, 1e-9);
    EXPECT_TRUE(menu->select(1, false));
    EXPECT_NEAR(menu->angle(), 1.5 * pi, 1e-9);
    EXPECT_TRUE(menu->slice(1)->isSelected);
    EXPECT_EQ(menu->itemAt({0.5, 0}), 2U);
    EXPECT_EQ(menu->itemAt({0.01, 0.01}), std::nullopt);
    EXPECT_FALSE(menu->beginDrag({0, 0}, 1s) || menu->select(4, true) || menu->slice(4));
    EXPECT_THAT(takeSelected(), ElementsAre(1));
}

TEST_F(RotatingMenuTest, RunsOnTheSameWayAtAnyFrameRate) {
    const auto advance = [this](std::chrono::milliseconds time, std::chrono::milliseconds frame) {
        for (auto passed = 0ms; passed < time; passed += frame) menu->advance(frame);
        return menu->angle();
    };
    for (const double speed : {0.3, -2.0, 11.0, -1e9}) {
        menu->setItems(std::vector<RotatingMenuItem>(7));
        flick(6, speed);
        const double halfway = advance(700ms, 700ms);
        const double end = advance(2800ms, 700ms);
        const auto index = takeSelected();
        EXPECT_EQ(index.size(), 1U);
        for (const auto frame : {1ms, 7ms, 100ms, 350ms}) {
            menu->setItems(std::vector<RotatingMenuItem>(7));
            flick(6, speed);
            EXPECT_NEAR(advance(700ms, frame), halfway, 1e-9);
            EXPECT_EQ(advance(2800ms, frame), end);
            EXPECT_EQ(takeSelected(), index);
        }
    }
}

TEST_F(RotatingMenuTest, AWheelHasNoSeam) {
    menu->setItems(std::vector<RotatingMenuItem>(12));
    // Through the top, where angles begin, and the bottom, where directions change sign.
    for (const double place : {0.0, pi}) {
        menu->select(0, false);
        menu->beginDrag(at(place - 0.3), 1s);
        menu->moveDrag(at(place + 0.3), 2s);
        EXPECT_NEAR(menu->angle(), 0.6, 1e-9);
        menu->moveDrag({0.01, 0}, 3s);
        menu->moveDrag(at(place - 0.4), 4s);
        EXPECT_NEAR(menu->angle(), 2 * pi - 0.1, 1e-9);
    }
    menu->select(0, false);
    menu->select(1, true);
    menu->advance(100ms);
    EXPECT_GT(menu->angle(), 2 * pi - pi / 6) << "the longer way round";
}

TEST_F(RotatingMenuTest, AFlickCarriesOnUntilItIsCaught) {
    menu->setItems(std::vector<RotatingMenuItem>(12));
    // Through the bottom, to the item that is nearest where friction alone would end it.
    flick(pi - 0.2, 4);
    menu->advance(3s);
    EXPECT_THAT(takeSelected(), ElementsAre(7));
    flick(pi - 0.2, 4);
    menu->advance(100ms);
    const double turned = menu->angle();
    menu->select(0, true);
    EXPECT_NEAR(menu->angle(), turned, 1e-9);
    menu->advance(50ms);
    const double caught = menu->angle();
    menu->beginDrag(at(0), 2s);
    EXPECT_NEAR(menu->angle(), caught, 1e-9);

    // A choice takes the wheel out of the hand; a finger that has rested gives no speed.
    menu->select(0, false);
    menu->moveDrag(at(1), 2s);
    menu->beginDrag(at(0), 2s);
    menu->moveDrag(at(1), 2010ms);
    menu->endDrag(2200ms);
    menu->advance(3s);
    EXPECT_THAT(takeSelected(), ElementsAre(0, 10));
}

TEST_F(RotatingMenuTest, ComesToRestOnceWhateverIsDoneToIt) {
    constexpr double odd[] = {std::numeric_limits<double>::quiet_NaN(),
                              std::numeric_limits<double>::infinity(), -1e308, 0};
    constexpr RotatingMenu::Time times[] = {RotatingMenu::Time::min(), RotatingMenu::Time::max(),
                                            0ns, -1s};
    std::minstd_rand random(5);  // NOLINT: the same story each time
    const auto moment = [&] {
        return random() % 8 == 0 ? times[random() % 4]
                                 : RotatingMenu::Time(random() % 1'000'000'000);
    };
    const auto point = [&]() -> WheelPoint {
        if (random() % 8 == 0) return {odd[random() % 4], odd[random() % 4]};
        return at(static_cast<double>(random() % 1000));
    };
    for (const std::size_t count : {0U, 1U, 2U, 7U, 10'000U}) {
        menu->setItems(std::vector<RotatingMenuItem>(count));
        for (int round = 0; round < 300; ++round) {
            menu->beginDrag(point(), moment());
            for (auto moves = random() % 90; moves > 0; --moves) menu->moveDrag(point(), moment());
            if (random() % 2 == 0) menu->endDrag(moment());
            if (random() % 2 == 0) menu->advance(RotatingMenu::Time(random() % 3'000'000'000));
            if (random() % 9 == 0) menu->select(random() % 9, random() % 2 == 0);
            if (random() % 9 == 0) menu->setItems(std::vector<RotatingMenuItem>(count));
            menu->endDrag(moment());
            const bool turns = menu->isTurning();
            ASSERT_TRUE(menu->angle() >= 0 && menu->angle() < 2 * pi);
            if (count > 0) {
                const double direction = static_cast<double>(random() % 1000);
                const auto hit = *menu->itemAt(at(direction));
                const auto next = (hit + 1) % count;
                EXPECT_TRUE(menu->slice(hit)->sector.contains(direction));
                EXPECT_EQ(menu->slice(next)->sector.contains(direction), next == hit);
            }
            takeSelected();
            EXPECT_EQ(menu->advance(-1s), turns);
            EXPECT_FALSE(menu->advance(random() % 2 == 0 ? RotatingMenu::Time::max() : 3s));
            ASSERT_EQ(takeSelected().size(), turns ? 1U : 0U);
        }
    }
}

TEST_F(RotatingMenuTest, TheDelegateMayTurnItOnAndLetItGo) {
    menu->setItems(std::vector<RotatingMenuItem>(3));
    onSelect = [this] { menu->select(2, true); };
    menu->select(1, true);
    EXPECT_TRUE(menu->advance(1s));
    onSelect = [this] { menu.reset(); };
    menu->advance(1s);
    EXPECT_EQ(menu, nullptr);
    EXPECT_THAT(takeSelected(), ElementsAre(1, 2));
}

}  // namespace
}  // namespace supportsdk::test
