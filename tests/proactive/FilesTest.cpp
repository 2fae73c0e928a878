#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>

#include "supportsdk/proactive/files/Descriptor.h"
#include "supportsdk/proactive/files/FileAttributes.h"
#include "supportsdk/proactive/files/FolderWalk.h"
#include "supportsdk/proactive/files/TargetFolder.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk {
namespace {

namespace fs = std::filesystem;
using test::TemporaryFolder;

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class TargetFolderTest : public testing::Test {
 protected:
    /// Whether the file was made; it holds "new" then.
    bool put(std::string_view name) {
        const auto file = target_->makeFile(name, error_);
        EXPECT_EQ(file == nullptr, static_cast<bool>(error_)) << name;
        return file && file->write(std::as_bytes(std::span("new", 3)), error_);
    }

    TemporaryFolder folder_;
    fs::path inside_ = folder_.path / "on/the/way";
    std::error_code error_;
    std::optional<TargetFolder> target_ = TargetFolder::create(inside_, error_);
};

TEST_F(TargetFolderTest, NamesThatLeaveItOrAreItself) {
    using namespace std::string_view_literals;
    const std::pair<std::string_view, std::errc> cases[] = {
        {"/tmp/x", std::errc::invalid_argument},    {"..", std::errc::invalid_argument},
        {"a/../../x", std::errc::invalid_argument}, {"a/..", std::errc::invalid_argument},
        {"a\0b"sv, std::errc::invalid_argument},    {"", std::errc::is_a_directory},
        {".", std::errc::is_a_directory},           {".//./", std::errc::is_a_directory},
    };
    for (const auto& [name, expected] : cases) {
        EXPECT_FALSE(put(name)) << name;
        EXPECT_EQ(error_, expected) << name;
        EXPECT_FALSE(target_->makeFolder(name, error_)) << name;
        EXPECT_EQ(error_, expected) << name;
    }
    EXPECT_FALSE(put("file/"));
    EXPECT_TRUE(fs::is_empty(inside_));

    EXPECT_TRUE(target_->makeFolder("./a//b/", error_));
    EXPECT_TRUE(put("a/./b/...") && put("..a") && put("a/c"));
    EXPECT_EQ(contentOf(inside_ / "a/b/..."), "new");
    EXPECT_EQ(contentOf(inside_ / "a/c"), "new");
    EXPECT_FALSE(put("a/bc/d")) << "its folder is not there";
    EXPECT_EQ(error_, std::errc::no_such_file_or_directory);
}

TEST_F(TargetFolderTest, WhatStandsThere) {
    const auto outside = folder_.write("outside/file", "old");
    fs::create_symlink(outside.parent_path(), inside_ / "linkedFolder");
    fs::create_symlink(outside, inside_ / "linkedFile");
    fs::create_symlink(folder_.path / "absent", inside_ / "dangling");
    fs::create_directory(inside_ / "folder");
    ASSERT_EQ(mkfifo((inside_ / "pipe").c_str(), 0600), 0);
    for (const auto* name : {"linkedFolder/file", "linkedFolder/fresh", "linkedFolder",
                             "linkedFile", "dangling", "folder", "pipe"})
        EXPECT_FALSE(put(name)) << name;
    EXPECT_FALSE(target_->makeFolder("linkedFolder/sub", error_));
    EXPECT_FALSE(target_->makeFolder("linkedFolder", error_));
    EXPECT_FALSE(target_->openFolder("linkedFolder", error_));
    EXPECT_FALSE(target_->openFolder("absent", error_));
    EXPECT_EQ(std::distance(fs::directory_iterator(outside.parent_path()), {}), 1);
    EXPECT_FALSE(fs::exists(folder_.path / "absent"));

    fs::create_hard_link(outside, inside_ / "sameFile");
    EXPECT_TRUE(put("sameFile"));
    EXPECT_EQ(contentOf(inside_ / "sameFile"), "new");
    EXPECT_EQ(contentOf(outside), "old");
}

TEST_F(TargetFolderTest, AttributesAndRemoval) {
    ASSERT_TRUE(target_->makeFolder("a/b", error_));
    ASSERT_TRUE(target_->openFolder("a", error_)->setAttributes(040701, -5, error_));
    const auto attributes = FileAttributesReader().read(inside_ / "a");
    EXPECT_EQ(attributes->permissions & 07777, 0701U);
    EXPECT_EQ(attributes->modified, -5);
    EXPECT_TRUE(put("a/b/file") && target_->removeFile("a/b/file", error_));
    EXPECT_TRUE(fs::is_empty(inside_ / "a/b"));
    EXPECT_FALSE(TargetFolder::create("", error_) ||
                 TargetFolder::create(folder_.write("file", ""), error_));
    EXPECT_EQ(error_, std::errc::not_a_directory);
}

/// From each deep folder to another that begins alike, more or less, in names that begin alike.
TEST(DeepTargetFolderTest, FromOneFolderToTheNext) {
    const TemporaryFolder folder(test::folderInMemory());
    std::error_code error;
    auto target = TargetFolder::create(folder.path, error);
    std::vector<std::string> parts;
    unsigned state = 1;
    const auto random = [&](std::size_t below) {
        return (state = state * 1664525 + 1013904223) / 65536 % below;
    };
    for (int turn = 0; turn < 100; turn++) {
        parts.resize(parts.size() - random(parts.size() + 1));
        while (parts.size() < 100 && random(60) > 0)
            parts.emplace_back(std::array{"a", "ab", "b"}[random(3)]);
        std::string path;
        for (const auto& part : parts) path += part + "/";
        ASSERT_TRUE(path.empty() || target->makeFolder(path, error)) << path;
        path += std::to_string(turn);
        ASSERT_TRUE(target->makeFile(path, error)) << path << error;
        ASSERT_TRUE(fs::exists(folder.path / path)) << path;
    }
}

TEST(FileAttributesTest, WholeSecondsAndNames) {
    const TemporaryFolder folder;
    const auto file = folder.write("file", "12345");
    const timespec times[] = {{0, UTIME_OMIT}, {-2, 500'000'000}};
    ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    fs::create_symlink(file, folder.path / "link");
    FileAttributesReader reader;
    const auto attributes = reader.read(folder.path / "link");
    EXPECT_EQ(attributes->kind, FileAttributes::Kind::plain);
    EXPECT_EQ(attributes->size, 5U);
    EXPECT_EQ(attributes->modified, -1);
    EXPECT_EQ(attributes->ownerName.empty(), false);
    EXPECT_FALSE(reader.read(folder.path / "absent") ||
                 reader.read(file.string() + std::string(1, '\0')));
    if (chown(file.c_str(), 4'000'000'000, 4'000'000'000) == 0) {
        EXPECT_EQ(reader.read(file)->ownerNumber, 4'000'000'000);
        EXPECT_EQ(reader.read(file)->groupName, "");
    }
}

std::vector<std::string> pathsBelow(const fs::path& folder) {
    std::vector<std::string> paths;
    walkFolder(folder, [&](const FolderEntry& entry) {
        paths.push_back(entry.path);
        return Walk::goesOn;
    });
    return paths;
}

TEST(FolderWalkTest, OrderLinksAndEnds) {
    const TemporaryFolder folder;
    for (const auto* name : {"b/2", "b/10", "b.c", "a", "\xff", "Z", "b/empty/x"})
        folder.write(name, "");
    fs::create_directory_symlink(folder.path, folder.path / "link");
    const std::vector<std::string> expected = {"Z",       "a",         "b",   "b/10", "b/2",
                                               "b/empty", "b/empty/x", "b.c", "link", "\xff"};
    EXPECT_EQ(pathsBelow(folder.path), expected);
    EXPECT_TRUE(pathsBelow(folder.path / "a").empty());

    std::vector<std::string> seen;
    const auto stopAtTwo = [&](const FolderEntry& entry) {
        seen.push_back(entry.path);
        return seen.size() == 2 ? Walk::ends : Walk::goesOn;
    };
    EXPECT_EQ(walkFolder(folder.path, stopAtTwo), Walk::ends);
    EXPECT_EQ(seen.size(), 2U);
}

/// Paths of this depth are longer than the system takes them.
TEST(FolderWalkTest, TwoThousandLevels) {
    const TemporaryFolder folder(test::folderInMemory());
    folder.write("deep/last", "");
    std::string name;
    Descriptor level(open(folder.path.c_str(), O_RDONLY));
    for (int count = 0; count < 2000; count++) {
        mkdirat(level.get(), "deep", 0700);
        level = Descriptor(openat(level.get(), "deep", O_RDONLY));
        name += "deep/";
    }
    const auto paths = pathsBelow(folder.path);
    ASSERT_EQ(paths.size(), 2001U);
    EXPECT_EQ(paths[1999] + "/", name);
    EXPECT_EQ(paths[2000], "deep/last") << "found again on the way up";

    // The temporary folder itself cannot remove what is so deep.
    EXPECT_EQ(std::system(("rm -rf " + (folder.path / "deep").string()).c_str()), 0);
    std::error_code error;
    EXPECT_FALSE(TargetFolder::create(folder.path, error)->makeFolder(name, error));
    EXPECT_EQ(error, std::errc::filename_too_long);
    EXPECT_TRUE(fs::is_empty(folder.path));
}

/// A folder that is moved away while what lies below it is visited: what follows in it is not
/// looked for in its new surroundings.
TEST(FolderWalkTest, FolderThatIsMovedMeanwhile) {
    const TemporaryFolder folder;
    std::string deep = "top";
    for (int level = 0; level < 20; level++) deep += "/d";
    folder.write("from/" + deep + "/file", "");
    folder.write("from/top/z", "");
    fs::create_directory(folder.path / "elsewhere");
    std::vector<std::string> unreadable;
    std::string last;
    walkFolder(
        folder.path / "from",
        [&](const FolderEntry& entry) {
            last = entry.path;
            if (entry.path.ends_with("file"))
                fs::rename(folder.path / "from/top/d", folder.path / "elsewhere/d");
            return Walk::goesOn;
        },
        [&](const std::string& path) { unreadable.push_back(path); });
    EXPECT_EQ(last, deep + "/file");
    EXPECT_EQ(unreadable, (std::vector<std::string>{"top", ""}));
}

}  // namespace
}  // namespace supportsdk
