#include "supportsdk/launcher/HistoryViewModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <random>

#include "backends/system/SystemClock.h"
#include "supportsdk/launcher/CachedClock.h"
#include "tests/support/FakePlatform.h"

namespace supportsdk::test {
namespace {

std::shared_ptr<QDIssue> issue(const char* id, int status, const char* created) {
    return std::make_shared<QDIssue>(Json{{"id", id}, {"status", status}, {"created", created}});
}

std::string order(HistoryViewModel& model) {
    model.sort();
    std::string ids;
    for (const auto& each : model.sortedEntries) ids += *each->id;
    return ids;
}

TEST(HistoryViewModel, DatesNotTextsAreSortedAndThoseUnreadableAreOldest) {
    HistoryViewModel model(
        std::make_shared<FakeClock>(), nullptr,
        {issue("a", 6, "soon"), issue("b", 7, "2026-01-02 10:00:00"),
         issue("c", 8, "2026-01-02 10:00:00"), issue("d", 0, "2025-12-31 24:00:00"),
         issue("e", 0, "2026-01-02 09:59:59"), issue("f", 9, "2026-02-29 00:00:00"),
         issue("g", 0, "1999-12-31 23:59:59"), std::make_shared<QDIssue>(Json{{"id", "h"}})});
    EXPECT_EQ(order(model), "");
    model.showOpen = model.showResolved = model.showClosed = true;
    EXPECT_EQ(order(model), "adfhgebc");
    model.sortDescending = true;
    EXPECT_EQ(order(model), "bcegadfh");
    model.showOpen = false;
    EXPECT_EQ(order(model), "bcf");
    model.showClosed = false;
    EXPECT_EQ(order(model), "b");
    EXPECT_EQ(model.originalEntries, model.entries);
}

/// The device's time zone for one test.
class Zone {
 public:
    explicit Zone(const char* name) {
        setenv("TZ", name, 1);
        tzset();
    }
    ~Zone() {
        unsetenv("TZ");
        tzset();
    }
    Zone(const Zone&) = delete;
    Zone& operator=(const Zone&) = delete;
};

TEST(CachedClock, AnswersAsTheDeviceDoesOnEveryDay) {
    std::mt19937 random(1);
    const auto device = std::make_shared<SystemClock>();
    // With changes of half an hour, at midnight, by a whole day, twice a month, and in the south.
    for (const char* name : {"Australia/Lord_Howe", "America/Havana", "Pacific/Apia",
                             "Africa/Casablanca", "America/Sao_Paulo", "Europe/Berlin"}) {
        const Zone zone(name);
        const CachedClock cached(device);
        int summers = 0;
        for (int moment = 0; moment < 20'000; ++moment) {
            std::tm parts{};
            parts.tm_year = 107 + static_cast<int>(random() % 12);
            parts.tm_mon = static_cast<int>(random() % 12);
            parts.tm_mday = 1 + static_cast<int>(random() % 31);
            parts.tm_hour = static_cast<int>(random() % 24);
            parts.tm_min = static_cast<int>(random() % 60);
            parts.tm_sec = static_cast<int>(random() % 60);
            const auto answer = cached.fromLocal(parts);
            ASSERT_EQ(answer, device->fromLocal(parts)) << name << " " << std::asctime(&parts);
            summers += device->local(answer).tm_isdst > 0;
        }
        EXPECT_GT(summers, 100) << name;
    }
    std::tm late{};
    late.tm_year = 126;
    late.tm_mday = 1;
    late.tm_hour = 30;
    EXPECT_EQ(CachedClock(device).fromLocal(late), device->fromLocal(late));
}

}  // namespace
}  // namespace supportsdk::test
