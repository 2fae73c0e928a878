#include "supportsdk/knowledge/KBViewModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

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

TEST(KBViewModel, ASingleRootIsNoRowAndSeveralAre) {
    const auto single = KBViewModel::createWithArray(
        {entry("b", article, "r"), entry("f", folder, "r"), entry("r", root),
         entry("a", article, "r"), entry("in f", article, "f")});
    EXPECT_THAT(rows(*single), ElementsAre("40 b", "40 f", "60 in f", "40 a"));

    const auto several = KBViewModel::createWithArray(
        {entry("child", article, "r"), entry("r", root), entry("s", root)});
    EXPECT_EQ(several->baseLevel, 1);
    EXPECT_THAT(rows(*several), ElementsAre("0 r", "20 child", "0 s"));
}

TEST(KBViewModel, WhatNoRootLeadsToIsNoRow) {
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
    model->didSelectRow(5);
    EXPECT_EQ(rows(*model), unfolded);
    model->didSelectRow(7);
    model->didSelectRow(8);
    model->didSelectRow(9);
    model->visibleEntries[7]->children.clear();
    model->didSelectRow(7);
    EXPECT_THAT(told->log, ElementsAre("expand 3", "expand 3", "folder 4", "entry a5"));
}

TEST(KBViewModel, AChainOfAnyLengthIsBuiltAndTakenApart) {
    auto model = KBViewModel::createWithArray(staircase(25'000));
    EXPECT_EQ(model->entries.back()->level, 25'000);
    EXPECT_EQ(model->numberOfRows(), 9U);
    // The folder alone keeps everything below it.
    const auto deep = KBViewModel::createWithFolder(model->visibleEntries[7]);
    model.reset();
    EXPECT_EQ(deep->kbRoot->folders().front()->level, 5);
    EXPECT_EQ(deep->numberOfRows(), 0U);
}

}  // namespace
}  // namespace supportsdk::test
