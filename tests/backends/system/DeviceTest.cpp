#include <sys/stat.h>

#include <cstdlib>

#include "backends/system/LinuxDevice.h"
#include "backends/system/Logs.h"
#include "backends/system/SystemClock.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk::test {
namespace {

TEST(LinuxDevice, TakesTheFirstKnownFactAndMakesItFitForAHeader) {
    const TemporaryFolder folder;
    folder.write("etc/os-release", "NAME=\"X\"\nVERSION_ID=\"12\"\n");
    folder.write("sys/class/dmi/id/product_name", "  Model\x01\xc3\xa9 9 \n");
    folder.write("proc/device-tree/model", std::string_view("Board\0", 6));
    const LinuxDevice device(folder.path);
    EXPECT_EQ(device.systemVersion(), "12");
    EXPECT_EQ(device.model(), "Model 9");

    std::filesystem::remove_all(folder.path / "sys");
    std::filesystem::remove_all(folder.path / "etc");
    const LinuxDevice board(folder.path);
    EXPECT_EQ(board.model(), "Board");
    EXPECT_NE(board.systemVersion(), "") << "the kernel's release stands in";
}

TEST(FileLog, AppendsWholeLinesThatForeignTextCannotForge) {
    const TemporaryFolder folder;
    const auto file = folder.path / "kit.log";
    FileLog log(file);
    EXPECT_FALSE(std::filesystem::exists(file));
    log.write("one\nforged\x1b[2J");
    FileLog(file).write("two");
    FileLog(folder.path / "no/such/folder").write("dropped");

    std::ifstream in(file);
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    EXPECT_EQ(text, "one?forged?[2J\ntwo\n");
    struct stat status {};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
}

class ClockTest : public testing::Test {
 protected:
    ClockTest() { zone("CET-1CEST,M3.5.0,M10.5.0/3"); }
    ~ClockTest() override {
        unsetenv("TZ");
        tzset();
    }
    static void zone(const char* name) {
        setenv("TZ", name, 1);
        tzset();
    }
    static Clock::Time at(std::time_t seconds) {
        return std::chrono::system_clock::from_time_t(seconds);
    }

    SystemClock clock;
};

TEST_F(ClockTest, LocalPartsFollowTheZoneAndLeadBack) {
    for (const std::time_t seconds : {1782820800, 1769860830, 0, -1}) {
        const auto parts = clock.local(at(seconds));
        EXPECT_EQ(clock.fromLocal(parts), at(seconds));
    }
    EXPECT_EQ(clock.local(at(1782820800)).tm_gmtoff, 7200);
    EXPECT_EQ(clock.local(at(1769860830)).tm_gmtoff, 3600);
    EXPECT_EQ(clock.local(at(0) - std::chrono::milliseconds{1}).tm_sec, 59);
}

TEST_F(ClockTest, FromLocalIgnoresTheSummerTimeMarkCarriesOverAndStopsAtTheEnds) {
    std::tm parts{};
    parts.tm_year = 126;
    parts.tm_mon = 6;
    parts.tm_mday = 32;  // the first of August
    parts.tm_hour = 12;
    auto marked = parts;
    marked.tm_isdst = 1;
    EXPECT_EQ(clock.fromLocal(parts), clock.fromLocal(marked));
    EXPECT_EQ(clock.local(clock.fromLocal(parts)).tm_mon, 7);

    parts.tm_year = 100'000;
    EXPECT_GT(clock.fromLocal(parts), at(9'000'000'000));
    parts.tm_year = -100'000;
    EXPECT_LT(clock.fromLocal(parts), at(-9'000'000'000));
}

}  // namespace
}  // namespace supportsdk::test
