// Sorting a long history by date, beside the sort alone of dates already read, and beside mktime
// for each date. Processor time.

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <random>
#include <vector>

#include "backends/system/SystemClock.h"
#include "bench/chat/Figures.h"
#include "supportsdk/launcher/HistoryRow.h"
#include "supportsdk/launcher/HistoryViewModel.h"

namespace {

using namespace supportsdk;
using supportsdk::bench::median;
using supportsdk::bench::processorSeconds;
using supportsdk::bench::require;

constexpr int runs = 5;
constexpr std::size_t count = 50'000;
constexpr std::int64_t newest = 1'795'000'000;
constexpr std::int64_t fiveYears = 5LL * 365 * 24 * 3600;

using Dated = std::pair<Clock::Time, std::shared_ptr<QDIssue>>;

/// Issues of five years, in no order.
HistoryViewModel::Issues issues(const Clock& clock) {
    std::mt19937_64 random(1);
    HistoryViewModel::Issues all;
    for (std::size_t number = 0; number < count; ++number) {
        const auto age = static_cast<std::int64_t>(random() % fiveYears);
        const auto parts = clock.local(std::chrono::system_clock::from_time_t(newest - age));
        char text[32];
        const auto length = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts);
        auto issue = std::make_shared<QDIssue>();
        issue->created = std::string(text, length);
        issue->status = static_cast<std::int64_t>(number % 10);
        all.push_back(std::move(issue));
    }
    return all;
}

template <class Work>
double milliseconds(Work work) {
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        const auto start = processorSeconds();
        work();
        times.push_back((processorSeconds() - start) * 1e3);
    }
    return median(times);
}

}  // namespace

int main() {
    const auto clock = std::make_shared<SystemClock>();
    const auto all = issues(*clock);
    HistoryViewModel model(clock, nullptr, all);
    model.showOpen = model.showResolved = model.showClosed = true;
    const auto whole = milliseconds([&] { model.sort(); });
    require(model.numberOfRows() == count, "sorting");

    std::vector<Dated> dated;
    const auto reading = milliseconds([&] {
        dated.clear();
        for (const auto& issue : all)
            dated.emplace_back(*dateFromIssue(*clock, issue->created), issue);
    });
    const auto sorting = milliseconds([&] {
        auto copy = dated;
        std::stable_sort(copy.begin(), copy.end(),
                         [](const Dated& one, const Dated& two) { return one.first < two.first; });
        require(copy.front().first <= copy.back().first, "std::stable_sort");
    });
    std::printf(
        "a history of %zu issues of five years, filtered and sorted, medians of %d runs\n"
        "  the kit: %.1f ms; std::stable_sort of dates already read: %.1f ms; mktime for each "
        "date: %.1f ms\n",
        count, runs, whole, sorting, reading);
}
