#include "supportsdk/knowledge/KBViewModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "supportsdk/core/KeyedHash.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int article = 0, folder = 1, root = 2;

/// An entry that is titled as it is identified.
Json entry(const std::string& id, int type, const std::string& parent = "") {
    return {{"id", id}, {"title", id}, {"type", type}, {"parent_id", parent}};
}

/// The titles of the rows, each behind its indent.
std::vector<std::string> rows(const KBViewModel& model) {
    std::vector<std::string> all;
    for (const auto& row : model.visibleEntries) {
        const auto indent = static_cast<int>(model.indentForEntry(*row));
        all.push_back(std::to_string(indent) + " " + row->title.value_or("-"));
    }
    return all;
}

struct Told : KBViewModelDelegate {
    void viewModelDidSelectFolder(KBViewModel&, const KBViewModel::Entry& chosen) override {
        log.push_back("folder " + *chosen->title);
    }
    void viewModelDidSelectEntry(KBViewModel&, const KBViewModel::Entry& chosen) override {
        log.push_back("entry " + *chosen->title);
    }
    void viewModelDidExpandFolder(KBViewModel&, const KBViewModel::Entry& chosen) override {
        log.push_back("expand " + *chosen->title);
    }
    std::vector<std::string> log;
};

/// A root "0" and folders "1" to "depth", each in the one before and with an article beside it.
Json staircase(int depth) {
    Json all = Json::array({entry("0", root)});
    for (int level = 1; level <= depth; ++level) {
        const auto parent = std::to_string(level - 1);
        all.push_back(entry("a" + std::to_string(level), article, parent));
        all.push_back(entry(std::to_string(level), folder, parent));
    }
    return all;
}

TEST(KBViewModel, ASingleRootIsNoRowAndWhatNoRootLeadsToIsNone) {
    const auto model = KBViewModel::createWithArray(
        {entry("r", root), entry("x", folder, "y"), entry("y", folder, "x"),
         entry("self", folder, "self"), entry("lost", article, "nobody"), Json("text"),
         Json{{"type", "1"}, {"parent_id", Json()}},
         // These lead back to where they hang, and are there only once.
         entry("r", folder, "r"), entry("kept", article, "r")});
    EXPECT_EQ(model->entries.size(), 9U);
    EXPECT_THAT(rows(*model), ElementsAre("40 r", "40 kept"));

    const auto numbered = KBViewModel::createWithArray(
        {{{"id", 7}, {"type", 2}}, {{"title", 3}, {"parent_id", 7}}, entry("s", article, "7")});
    EXPECT_THAT(rows(*numbered), ElementsAre("40 3", "40 s"));
    EXPECT_THAT(rows(*KBViewModel::createWithArray(Json::array())), IsEmpty());
    const KBEntryModel read({{"folder_name", "f"}, {"description", "d"}});
    EXPECT_EQ(read.folderName.value_or("") + read.desc.value_or(""), "fd");

    const auto several = KBViewModel::createWithArray(
        {entry("child", article, "r"), entry("r", root), entry("s", root)});
    EXPECT_THAT(rows(*several), ElementsAre("0 r", "20 child", "0 s"));
    several->didSelectRow(0);
    EXPECT_THAT(rows(*several), ElementsAre("0 r", "0 s"));
}

TEST(KBViewModel, FoldersFoldDownToDepthThreeAndDeeperOnesOpenElsewhere) {
    const auto model = KBViewModel::createWithArray(staircase(6));
    const auto told = std::make_shared<Told>();
    model->delegate = told;
    const std::vector<std::string> unfolded{"40 a1", "40 1",   "60 a2", "60 2",  "80 a3",
                                            "80 3",  "100 a4", "100 4", "120 a5"};
    // Of depth 5 the article shows, and the folder does not.
    EXPECT_EQ(rows(*model), unfolded);

    model->didSelectRow(5);
    EXPECT_THAT(rows(*model), ElementsAre("40 a1", "40 1", "60 a2", "60 2", "80 a3", "80 3"));
    // What is folded inside a folder stays so when that one opens again.
    model->didSelectRow(1);
    EXPECT_EQ(model->numberOfRows(), 2U);
    model->didSelectRow(1);
    EXPECT_EQ(model->numberOfRows(), 6U);
    model->didSelectRow(5);
    EXPECT_EQ(rows(*model), unfolded);
    model->didSelectRow(7);
    model->didSelectRow(8);
    model->didSelectRow(9);
    model->visibleEntries[7]->children.clear();
    model->didSelectRow(7);
    EXPECT_THAT(told->log, ElementsAre("expand 3", "expand 1", "expand 1", "expand 3", "folder 4",
                                       "entry a5"));
}

/// Every entry below `top`, each behind its level, and in brackets what hangs below it.
std::string outline(const KBEntryModel& top) {
    std::string text;
    for (const auto& child : top.children)
        text += std::to_string(child->level) + *child->title + "(" + outline(*child) + ")";
    return text;
}

TEST(KBViewModel, AFamilyGoesAsAWholeToItsFirstParentDepthFirst) {
    const auto model = KBViewModel::createWithArray(
        {entry("early", article, "b"), entry("r", root), entry("a", folder, "r"),
         entry("b", folder, "r"), entry("b", folder, "a"), entry("late", article, "b"),
         entry("c", folder, "a"), entry("last", article, "a")});
    EXPECT_EQ(outline(*model->kbRoot), "1a(2b(3early()3late())2c()2last())1b()");
}

TEST(KBViewModel, TensOfThousandsOfEntriesOfAnyShape) {
    // Enough levels for any recursion to run out of its stack.
    constexpr std::size_t count = 30'000;
    Json all = Json::array({entry("0", root)});
    for (std::size_t number = 1; number < count; ++number)
        all.push_back(entry(std::to_string(number), folder, std::to_string(number - 1)));
    const auto expect = [&all](std::size_t adopted, std::size_t rows) {
        const auto model = KBViewModel::createWithArray(all);
        std::size_t found = 0;
        for (const auto& each : model->entries) found += each->children.size();
        EXPECT_EQ(found, adopted);
        EXPECT_EQ(model->numberOfRows(), rows);
        return model;
    };
    auto deep = expect(count - 1, 4);
    EXPECT_EQ(deep->entries.back()->level, count - 1);
    // The folder alone keeps everything below it.
    const auto pushed = KBViewModel::createWithFolder(deep->visibleEntries[3]);
    deep.reset();
    EXPECT_EQ(pushed->kbRoot->folders().front()->level, 5);
    EXPECT_EQ(pushed->numberOfRows(), 0U);

    // All of them lead to each other, and the root to none.
    all[1]["parent_id"] = std::to_string(count - 1);
    expect(0, 0);
    for (auto& each : all) each["parent_id"] = "0";
    expect(count - 1, count - 1);

    // Nobody outside can choose identifiers that collide, and the ends of long ones count.
    const KeyedHash hash;
    EXPECT_NE(hash("1"), KeyedHash()("1"));
    EXPECT_NE(hash("12345678"), hash("12345679"));
}

TEST(KBViewModel, ChangesFromElsewhereShowWithTheNextFold) {
    const auto model = KBViewModel::createWithArray(staircase(3));
    const auto unfolded = rows(*model);
    // The host has closed the folder without telling the list, and a tap opens it again.
    model->visibleEntries[1]->setCollapsed(true);
    model->didSelectRow(1);
    EXPECT_EQ(rows(*model), unfolded);
    model->visibleEntries[3]->children.clear();
    model->didSelectRow(1);
    EXPECT_THAT(rows(*model), ElementsAre("40 a1", "40 1"));

    const auto top = KBViewModel::createWithArray(staircase(2));
    top->updateVisibleEntriesFromRootEntry(top->kbRoot);
    EXPECT_THAT(rows(*top), ElementsAre("20 0", "40 a1", "40 1", "60 a2", "60 2"));
    top->kbRoot->parentId = "0";
    const auto rest = top->kbRoot->addChildrenFromEntries(
        {top->kbRoot, std::make_shared<KBEntryModel>(entry("late", article, "0")),
         std::make_shared<KBEntryModel>(entry("lost", article, "nobody")),
         std::make_shared<KBEntryModel>(Json{{"title", "without a parent"}})});
    top->updateVisibleEntries();
    EXPECT_EQ(rows(*top).back(), "40 late");
    EXPECT_EQ(rest.size(), 3U);
    KBViewModel::sort(top->entries);
    EXPECT_EQ(top->entries.front()->title, "0");
    EXPECT_EQ(top->entries.back()->title, "a2");
}

}  // namespace
}  // namespace supportsdk::test
