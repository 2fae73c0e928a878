#include <future>

#include "backends/gio/PortalUrlOpener.h"
#include "backends/system/ThreadBackgroundQueue.h"
#include "tests/backends/system/FakePortal.h"
#include "tests/support/LoopMainQueue.h"
#include "tests/support/MessageBus.h"

namespace supportsdk::test {
namespace {

using namespace std::chrono_literals;

constexpr const char* busVariable = "DBUS_SESSION_BUS_ADDRESS";

/// GLib reads the desktop's folders once, so they are set up before everything else.
class Desktop : public testing::Environment {
 public:
    void SetUp() override {
        folder_.write("share/applications/dial.desktop",
                      "[Desktop Entry]\nType=Application\nName=Dial\nExec=true %u\n");
        folder_.write("config/mimeapps.list",
                      "[Default Applications]\nx-scheme-handler/tel=dial.desktop\n");
        const auto set = [this](const char* name, const char* folder) {
            setenv(name, (folder_.path / folder).c_str(), 1);
        };
        set("XDG_DATA_HOME", "share");
        set("XDG_DATA_DIRS", "none");
        set("XDG_CONFIG_HOME", "config");
        set("XDG_CONFIG_DIRS", "none");
        set("XDG_RUNTIME_DIR", "runtime");
        unsetenv(busVariable);
    }

 private:
    TemporaryFolder folder_;
};

[[maybe_unused]] const auto* const desktop = testing::AddGlobalTestEnvironment(new Desktop);

class UrlOpenerTest : public testing::Test {
 protected:
    ~UrlOpenerTest() override { unsetenv(busVariable); }

    void startBus() {
        ASSERT_TRUE(bus.start());
        setenv(busVariable, bus.address().c_str(), 1);
    }

    void makeOpener(std::chrono::milliseconds choiceTimeout = 20s) {
        opener = std::make_unique<PortalUrlOpener>(
            PortalUrlOpenerOptions{queue, background, 20s, choiceTimeout});
    }

    std::optional<bool> open(const std::string& url) {
        result.reset();
        opener->open(url, [this](bool worked) {
            EXPECT_TRUE(queue->isCurrent());
            EXPECT_FALSE(result) << "completed twice";
            result = worked;
        });
        EXPECT_FALSE(result) << "completed inside the call";
        queue->pumpUntil([this] { return result.has_value(); }, 20s);
        return result;
    }

    MessageBus bus{"session"};
    std::shared_ptr<LoopMainQueue> queue = std::make_shared<LoopMainQueue>();
    std::shared_ptr<ThreadBackgroundQueue> background = std::make_shared<ThreadBackgroundQueue>();
    std::optional<bool> result;
    std::unique_ptr<PortalUrlOpener> opener;
};

TEST_F(UrlOpenerTest, ThePortalsAnswerDecides) {
    startBus();
    makeOpener(300ms);
    using enum FakePortal::Manner;
    const std::vector<std::pair<FakePortal::Manner, bool>> cases = {
        {opens, true},    {answersEarly, true}, {personCancels, false},
        {refuses, false}, {staysSilent, false}, {foreignAnswer, false}};
    for (const auto& [manner, expected] : cases) {
        std::promise<std::string> url;
        const FakePortal portal(bus.address(), manner,
                                [&](const std::string& asked) { url.set_value(asked); });
        EXPECT_EQ(open("https://example.test/?a=b c"), expected) << static_cast<int>(manner);
        EXPECT_EQ(url.get_future().get(), "https://example.test/?a=b c");
    }
}

TEST_F(UrlOpenerTest, WithoutBusOrPortalOpeningFails) {
    makeOpener();
    EXPECT_EQ(open("https://example.test/"), false) << "no bus";
    setenv(busVariable, "unix:path=/nowhere;autolaunch:", 1);
    EXPECT_EQ(open("https://example.test/"), false) << "a bus would have to be started";
    setenv(busVariable, "nonsense", 1);
    EXPECT_EQ(open("https://example.test/"), false) << "no address";

    startBus();
    EXPECT_EQ(open("https://example.test/"), false) << "no portal";
    FakePortal portal(bus.address(), FakePortal::Manner::opens);
    EXPECT_EQ(open("\xff\xfe"), false) << "no text";
}

TEST_F(UrlOpenerTest, TheEndOfTheBusOrOfTheOpenerEndsTheWaiting) {
    startBus();
    {
        const FakePortal portal(bus.address(), FakePortal::Manner::staysSilent,
                                [&](const std::string&) { queue->post([&] { opener.reset(); }); });
        makeOpener();
        EXPECT_EQ(open("https://example.test/"), false);
    }
    const FakePortal portal(bus.address(), FakePortal::Manner::staysSilent,
                            [&](const std::string&) { queue->post([&] { bus.stop(); }); });
    makeOpener();
    EXPECT_EQ(open("https://example.test/"), false);
}

TEST_F(UrlOpenerTest, CanOpenAsksForAProgramForTheScheme) {
    makeOpener();
    EXPECT_TRUE(opener->canOpen("tel:+491234"));
    EXPECT_TRUE(opener->canOpen("TEL:1"));
    EXPECT_FALSE(opener->canOpen("mailto:a@example.test"));
    EXPECT_FALSE(opener->canOpen("no address"));
    EXPECT_FALSE(opener->canOpen(""));
    EXPECT_FALSE(opener->canSendMail());
}

}  // namespace
}  // namespace supportsdk::test
