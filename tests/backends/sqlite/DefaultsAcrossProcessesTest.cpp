#include <csignal>
#include <random>
#include <thread>

#include "tests/backends/sqlite/DefaultsFixture.h"

namespace supportsdk::test {
namespace {

using DefaultsAcrossProcesses = DefaultsFixture;

constexpr int kKeys = 20;

std::string keyOf(int count) {
    return "key" + std::to_string(count % kKeys);
}

Json valueOf(int count) {
    return {{"count", count},
            {"filler", std::string(static_cast<std::size_t>(count * 37 % 3000), 'f')}};
}

/// Writes one value after the other and reports each that was taken, until it is killed.
void writeForever(SqliteUserDefaultsStore& store, int from, int report) {
    for (int count = from;; ++count) {
        store.standard()->setValue(keyOf(count), valueOf(count));
        if (write(report, &count, sizeof(count)) != sizeof(count)) return;
        if (count % 50 == 0) store.standard()->flush();
    }
}

/// The last count that came through; `last` when none did.
int drain(int report, int last) {
    int count = 0;
    while (read(report, &count, sizeof(count)) == sizeof(count)) last = count;
    return last;
}

TEST_F(DefaultsAcrossProcesses, surviveKillsAtAnyInstant) {
    std::minstd_rand random(20240);
    int last = 0;
    for (int round = 0; round < 300; ++round) {
        int report[2];
        ASSERT_EQ(pipe(report), 0);
        const pid_t child = inChild([&] { writeForever(*open(), last + 1, report[1]); });
        close(report[1]);
        // A third of the rounds die while the file is opened, the others while it is written.
        int first = last;
        if (round % 3 != 0) {
            ASSERT_EQ(read(report[0], &first, sizeof(first)), ssize_t(sizeof(first)));
        }
        std::this_thread::sleep_for(std::chrono::microseconds{random() % 6000});
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        last = drain(report[0], first);
        close(report[0]);

        const auto defaults = open()->standard();
        for (int count = std::max(1, last - kKeys + 1); count <= last; ++count) {
            const auto stored = defaults->value(keyOf(count));
            ASSERT_TRUE(stored) << "round " << round << ", " << count;
            const bool isNext = *stored == valueOf(count + kKeys) && count + kKeys == last + 1;
            ASSERT_TRUE(*stored == valueOf(count) || isNext) << "round " << round << ", " << count;
        }
        // The child may have stored one value more than it could report.
        if (defaults->value(keyOf(last + 1)) == valueOf(last + 1)) ++last;
    }
    EXPECT_GT(last, 300);
    EXPECT_TRUE(log->lines.empty()) << log->lines[0];
    EXPECT_TRUE(filesWith(".damaged-").empty());
}

TEST_F(DefaultsAcrossProcesses, loseNothingWhenTwoWriteAtOnce) {
    constexpr int kWrites = 400;
    const auto work = [&](const std::string& name) {
        const auto store = open();
        for (int i = 0; i < kWrites; ++i) {
            store->standard()->setValue(name + std::to_string(i), i);
            store->standard()->setValue("shared", name);
            if (i % 100 == 0) store->standard()->flush();
        }
        if (!log->lines.empty()) _exit(1);
    };
    const pid_t children[] = {inChild([&] { work("a"); }), inChild([&] { work("b"); })};
    const auto store = open();
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds{60};
    while (!store->standard()->value("a399") || !store->standard()->value("b399")) {
        ASSERT_LT(std::chrono::steady_clock::now(), deadline);
        store->standard()->setValue("mine", 1);
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(store->standard()->keys().size(), std::size_t{2 * kWrites + 2});
    EXPECT_TRUE(log->lines.empty());
}

}  // namespace
}  // namespace supportsdk::test
