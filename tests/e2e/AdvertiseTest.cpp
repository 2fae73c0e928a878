#include <gmock/gmock.h>

#include "tests/e2e/Road.h"
#include "tests/support/MdnsResponder.h"

// The device on the local network, as another program sees it.

namespace supportsdk::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Key;
using testing::Pair;
using testing::SizeIs;

class AdvertiseTest : public Road {
 protected:
    void SetUp() override {
        if (const auto obstacle = MdnsResponder::obstacle(); !obstacle.empty())
            GTEST_SKIP() << obstacle;
        ASSERT_TRUE(responder.startBus());
        Road::SetUp();
        load();
    }

    void advertise(const Json& shown, const Json& hidden) {
        host->send({{"do", "advertise"}, {"public", shown}, {"private", hidden}});
    }

    MdnsResponder responder;
};

TEST_F(AdvertiseTest, TheRecordSaysWhatRunsHereAndHidesWhatIsPrivate) {
    // A daemon that is not there yet disturbs nobody.
    advertise(Json::object(), nullptr);
    host->await("delegate", {{"operation", "supportButtonDidFailToAdvertiseService"}});
    ASSERT_TRUE(responder.startDaemon());
    host->await("delegate", {{"operation", "supportButtonDidAdvertiseService"}});
    // The new record takes the place and the name of the former.
    advertise({{"version", "host's own"}, {"private", "forged"}, {"floor", 3}}, {{"door", "7"}});
    host->await("delegate", {{"operation", "supportButtonDidAdvertiseService"}});
    ServiceBrowser browser("_connect._tcp");
    const auto found = browser.awaitService("device");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->domain, "local");
    EXPECT_EQ(found->port, 22666);
    EXPECT_THAT(found->txt, AllOf(Contains(Key("provider_id")), Contains(Pair("floor", "3")),
                                  Contains(Pair("version", "host's own")),
                                  Contains(Pair("private", SizeIs(44)))))
        << "a keyed hash";

    host->send({{"do", "quit"}});
    EXPECT_EQ(host->waitForEnd(), 0);
    EXPECT_TRUE(browser.awaitGone("device"));
}

}  // namespace
}  // namespace supportsdk::test
