#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "tests/backends/strophe/StreamFixture.h"

namespace supportsdk::test {
namespace {

/// A host with 1,500 files open.
class DescriptorLimit : public ProsodyStreamTest {
 protected:
    void SetUp() override {
        rlimit limit{};
        getrlimit(RLIMIT_NOFILE, &limit);
        limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, 4096);
        if (limit.rlim_cur < 2048 || setrlimit(RLIMIT_NOFILE, &limit) != 0)
            GTEST_SKIP() << "needs leave to open 2,048 files";
        ProsodyStreamTest::SetUp();
    }
    void TearDown() override {
        for (const int each : std::exchange(open_, {})) close(each);
    }
    void openMany() {
        while (open_.size() < 1500) open_.push_back(open("/dev/null", O_RDONLY | O_CLOEXEC));
    }

    std::vector<int> open_;
};

TEST_F(DescriptorLimit, WithNoneLeftTheAttemptFailsAndOneReservedEarlyServesReconnections) {
    openMany();
    auto none = connect("ann@support.test");
    ASSERT_TRUE(awaitEnd(*none));
    EXPECT_EQ(none->ends[0].loss, XmppLoss::noDescriptor);
    EXPECT_GE(none->endedAfter, milliseconds{1000});
    none.reset();
    TearDown();

    StropheStreamFactory factory({queue, log, {authority->certificate()}, false});
    const auto first = factory.makeStream();
    openMany();
    for (int i = 0; i < 3; ++i) {
        WatchedStream again;
        again.stream = factory.makeStream();
        again.connect(optionsFor("ann@support.test"));
        ASSERT_TRUE(awaitUp(again)) << i;
        again.stream->disconnect();
        ASSERT_TRUE(awaitEnd(again)) << i;
    }
}

}  // namespace
}  // namespace supportsdk::test
