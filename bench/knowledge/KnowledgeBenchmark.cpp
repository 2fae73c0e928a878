// What an entry of the knowledge base costs to hang up, beside parsing it, and what a row costs to
// fold, beside listing all rows anew. Processor time.

#include <algorithm>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "bench/chat/Figures.h"
#include "bench/knowledge/PlainRule.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/knowledge/KBViewModel.h"

namespace {

using namespace supportsdk;
using supportsdk::bench::median;
using supportsdk::bench::PlainRule;
using supportsdk::bench::processorSeconds;
using supportsdk::bench::require;

constexpr int runs = 5;
constexpr std::size_t small = 1'000;
constexpr std::size_t large = 100'000;

enum class Shape { flat, deep, shuffled };

Json entry(std::size_t number, int type, std::size_t parent) {
    return {{"id", std::to_string(number)},
            {"parent_id", std::to_string(parent)},
            {"type", type},
            {"title", "How to restart the receiver in room " + std::to_string(number)},
            {"sub_title", "Receivers"},
            {"url", "https://kb.test/articles/" + std::to_string(number)},
            {"created", "2026-01-31 12:00:30"}};
}

/// A root and `count` - 1 folders; shuffled is deep out of order.
std::string entriesOf(Shape shape, std::size_t count) {
    Json all = Json::array();
    for (std::size_t number = 0; number < count; ++number) {
        const auto parent = shape == Shape::flat || number == 0 ? 0 : number - 1;
        all.push_back(entry(number, number == 0 ? 2 : 1, parent));
    }
    if (shape == Shape::shuffled) std::shuffle(all.begin(), all.end(), std::mt19937(1));
    return dumpJson(all);
}

/// Processor time in nanoseconds of one of `count`, the median of the runs. `prepare` is not timed.
template <class Prepare, class Work>
double nanosecondsEach(std::size_t count, Prepare prepare, Work work) {
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        auto prepared = prepare();
        const auto start = processorSeconds();
        work(prepared);
        times.push_back((processorSeconds() - start) * 1e9 / static_cast<double>(count));
    }
    return median(times);
}

double parsingCost(const std::string& text, std::size_t count) {
    return nanosecondsEach(
        count, [] { return Json(); }, [&text](Json& parsed) { parsed = *parseJson(text); });
}

double buildingCost(const std::string& text, std::size_t count) {
    const auto array = *parseJson(text);
    return nanosecondsEach(
        count, [] { return std::shared_ptr<KBViewModel>(); },
        [&](auto& model) {
            model = KBViewModel::createWithArray(array);
            require(model->entries.size() == count && model->numberOfRows() > 0, "building");
        });
}

double plainRuleCost(const std::string& text, std::size_t count) {
    const auto array = *parseJson(text);
    return nanosecondsEach(
        count, [] { return 0; },
        [&](int) { require(!PlainRule(array).isEndless, "the plain rule"); });
}

void measureBuilding() {
    std::printf("a tree from parsed JSON, ns an entry, medians of %d runs\n", runs);
    for (const auto& [shape, name] :
         {std::pair(Shape::flat, "flat"), std::pair(Shape::deep, "deep"),
          std::pair(Shape::shuffled, "deep, shuffled")}) {
        const auto few = entriesOf(shape, small);
        const auto many = entriesOf(shape, large);
        const auto fewCost = buildingCost(few, small);
        const auto manyCost = buildingCost(many, large);
        std::printf(
            "  %s: %.0f of %zu, %.0f of %zu, ratio %.2f; nlohmann parses them in %.0f and "
            "%.0f; the plain rule takes %.0f of %zu\n",
            name, fewCost, small, manyCost, large, manyCost / fewCost, parsingCost(few, small),
            parsingCost(many, large), plainRuleCost(few, small), small);
    }
}

/// Folders of 99 articles each.
std::shared_ptr<KBViewModel> folders(std::size_t count) {
    Json all = Json::array({entry(0, 2, 0)});
    std::size_t folder = 0;
    for (std::size_t number = 1; number <= count; ++number) {
        const bool isFolder = number % 100 == 1;
        if (isFolder) folder = number;
        all.push_back(entry(number, isFolder ? 1 : 0, isFolder ? 0 : folder));
    }
    return KBViewModel::createWithArray(all);
}

/// Closes and opens a folder in the middle; of one row.
double foldingCost(KBViewModel& model, std::size_t row, std::size_t below) {
    const auto all = model.numberOfRows();
    return nanosecondsEach(
        2 * below, [] { return 0; },
        [&](int) {
            model.didSelectRow(row);
            require(model.numberOfRows() == all - below, "closing");
            model.didSelectRow(row);
            require(model.numberOfRows() == all, "opening");
        });
}

void measureFolding() {
    std::printf("closing and opening a folder, ns a row of it, medians of %d runs\n", runs);
    for (const auto count : {small, large}) {
        const auto model = folders(count);
        const auto fold = foldingCost(*model, count / 2, 99);
        const auto anew = nanosecondsEach(
            2 * 99, [] { return 0; },
            [&](int) {
                model->updateVisibleEntries();
                model->updateVisibleEntries();
            });
        std::printf("  of 99 rows among %zu: %.0f; by listing all anew: %.0f\n", count, fold, anew);
    }
    for (const auto count : {small, large}) {
        Json all = Json::array({entry(0, 2, 0), entry(1, 1, 0)});
        for (std::size_t number = 0; number < count; ++number)
            all.push_back(entry(number + 2, 0, 1));
        const auto model = KBViewModel::createWithArray(all);
        std::printf("  of %zu rows: %.0f\n", count, foldingCost(*model, 0, count));
    }
}

}  // namespace

int main() {
    measureBuilding();
    measureFolding();
}
