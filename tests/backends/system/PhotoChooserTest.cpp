#include "backends/gio/PortalPhotoChooser.h"
#include "backends/system/ThreadBackgroundQueue.h"
#include "tests/backends/system/FakePortal.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/LoopMainQueue.h"
#include "tests/support/MessageBus.h"

namespace supportsdk::test {
namespace {

using namespace std::chrono_literals;

class PhotoChooserTest : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(bus.start());
        setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
        chooser = std::make_unique<PortalPhotoChooser>(
            PortalPhotoChooserOptions{queue, std::make_shared<ThreadBackgroundQueue>(), log,
                                      std::make_shared<FakeLocalizer>(), 20s, 20s});
    }
    ~PhotoChooserTest() override { unsetenv("DBUS_SESSION_BUS_ADDRESS"); }

    void choose() {
        chooser->choose({}, [this](std::vector<PhotoItem> items) {
            EXPECT_TRUE(queue->isCurrent());
            answers.push_back(std::move(items));
        });
    }
    /// What was chosen, once so many answers are there.
    std::vector<PhotoItem> waitFor(std::size_t count) {
        EXPECT_TRUE(queue->pumpUntil([&] { return answers.size() >= count; }, 20s));
        EXPECT_EQ(answers.size(), count);
        return answers.empty() ? std::vector<PhotoItem>() : answers.back();
    }

    MessageBus bus{"session"};
    TemporaryFolder folder;
    std::shared_ptr<FakeLog> log = std::make_shared<FakeLog>();
    std::shared_ptr<LoopMainQueue> queue = std::make_shared<LoopMainQueue>();
    std::unique_ptr<PortalPhotoChooser> chooser;
    std::vector<std::vector<PhotoItem>> answers;
};

TEST_F(PhotoChooserTest, ChosenFilesAreReadInTheirOrder) {
    folder.write("a b.png", "picture");
    const auto file = [this](const std::string& name) {
        return "file://" + (folder.path / name).string();
    };
    FakePortal portal(bus.address(), FakePortal::Manner::opens);
    portal.setChosen({file("a%20b.png"), file("missing"), "file://" + folder.path.string(),
                      "https://example.test/x.png", "nonsense"});
    choose();
    const auto items = waitFor(1);
    ASSERT_EQ(items.size(), 5U);
    EXPECT_EQ(toText(items[0].read().value_or(Bytes())), "picture");
    for (std::size_t at = 1; at < items.size(); ++at) EXPECT_FALSE(items[at].read()) << at;
}

TEST_F(PhotoChooserTest, NobodyChoosesWithoutAPortalOrWhenThePersonCancels) {
    choose();
    EXPECT_TRUE(waitFor(1).empty());
    EXPECT_EQ(log->lines.size(), 1U);
    using enum FakePortal::Manner;
    for (const auto manner : {personCancels, refuses}) {
        FakePortal portal(bus.address(), manner);
        portal.setChosen({"file:///x"});
        choose();
        EXPECT_TRUE(waitFor(answers.size() + 1).empty());
    }
}

TEST_F(PhotoChooserTest, AnotherCallAndTheEndCloseTheWindow) {
    const FakePortal portal(bus.address(), FakePortal::Manner::staysSilent);
    choose();
    choose();
    EXPECT_TRUE(waitFor(1).empty());
    chooser.reset();
    EXPECT_TRUE(waitFor(2).empty());
}

}  // namespace
}  // namespace supportsdk::test
