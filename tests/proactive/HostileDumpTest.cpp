#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "supportsdk/proactive/Dump.h"
#include "supportsdk/proactive/GzipData.h"
#include "supportsdk/proactive/tar/PaxRecords.h"
#include "supportsdk/proactive/tar/TarHeader.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk {
namespace {

namespace fs = std::filesystem;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using End = DumpResult::End;

std::string blocks(std::string text) {
    text.resize((text.size() + 511) / 512 * 512);
    return text;
}

/// `change` sees the header before its checksum is taken.
std::string entry(const std::string& name, const std::string& content, char type = '0',
                  const std::function<void(TarBlock&)>& change = nullptr) {
    FileAttributes attributes;
    attributes.permissions = 0755;
    attributes.size = content.size();
    auto header = makeTarHeader({"", name}, attributes, type);
    if (change) change(header);
    writeTarChecksum(header);
    return std::string(reinterpret_cast<const char*>(header.data()), header.size()) +
           blocks(content);
}

std::function<void(TarBlock&)> field(std::size_t place, const std::string& text) {
    return [=](TarBlock& header) {
        std::ranges::transform(text, header.begin() + static_cast<std::ptrdiff_t>(place),
                               [](char letter) { return std::byte(letter); });
    };
}

const std::string theEnd(1024, '\0');
const std::string good = entry("good", "content");

class HostileDumpTest : public testing::Test {
 protected:
    DumpResult unpack(const std::string& archive, const DumpOptions& options = {}) {
        fs::remove_all(inside_);
        return unpackDump(folder_.write("archive", archive), inside_, options);
    }
    std::size_t filesInside() const {
        return static_cast<std::size_t>(
            std::distance(fs::recursive_directory_iterator(inside_), {}));
    }

    test::TemporaryFolder folder_{test::folderInMemory()};
    fs::path inside_ = folder_.path / "inside";
};

TEST_F(HostileDumpTest, WhatIsNotUnpackedIsToldAndTheRestIsThere) {
    const auto pax = [](const std::string& records) { return entry("x", records, 'x'); };
    const std::pair<std::string, std::string> cases[] = {
        {entry("/absolute", "x"), "/absolute"},
        {entry("../outside", "x"), "../outside"},
        {entry("a/../../outside/", "", '5'), "a/../../outside/"},
        {pax(paxRecord("path", "../outside")) + entry("fine", "x"), "../outside"},
        {entry("L", "../outside", 'L') + entry("fine", "x"), "../outside"},
        {entry("", "x"), ""},
        {entry("good/below", "x"), "good/below"},
        {entry("folder/", "", '5') + entry("folder", "x"), "folder"},
        {entry("link", "", '2', field(157, "..")) + entry("device", "", '3') +
             entry("pipe", "", '6'),
         "link,device,pipe"},
        {entry("hard", "", '1', field(157, "../outside")), "hard"},
        {entry("unknown", "xyz", 'Q') + entry("sparse", "x", 'S') +
             entry("volume", std::string(1000, 'x'), 'M'),
         "unknown,sparse,volume"},
        // Sizes in fields of entries that have no data.
        {entry("link", "", '2', field(124, "00000777777")) +
             entry("pipe", "", '6', field(124, "00000777777")),
         "link,pipe"},
        {pax(paxRecord("GNU.sparse.major", "1") + paxRecord("GNU.sparse.name", "sparse")) +
             entry("GNUSparseFile.0/sparse", "map"),
         "sparse"},
        {pax(paxRecord("path", std::string("zero\0byte", 9))) + entry("fine", "x"),
         std::string("zero\0byte", 9)},
    };
    for (const auto& [hostile, skipped] : cases) {
        const auto result = unpack(good + hostile + entry("last", "x") + theEnd);
        EXPECT_EQ(result.end, End::done) << skipped << result.message;
        std::string told;
        for (const auto& name : result.skipped) told += (told.empty() ? "" : ",") + name;
        EXPECT_EQ(told, skipped);
        EXPECT_TRUE(fs::exists(inside_ / "good") && fs::exists(inside_ / "last")) << skipped;
        EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path), {}), 2) << skipped;
    }
}

TEST_F(HostileDumpTest, NumbersNamesAndRecordsOfAllKinds) {
    const std::string base256("\x80\0\0\0\0\0\0\0\0\0\0\3", 12);
    const auto result =
        unpack(entry("PaxHeader", paxRecord("comment", "x"), 'g', field(124, "0000000000016"))
                   .substr(0, 512) +
               blocks(paxRecord("comment", "x")) + entry("base", "abc", '0', field(124, base256)) +
               entry("blank", "", '0', field(124, std::string(12, ' '))) +
               entry("x",
                     paxRecord("path", "paxName") + paxRecord("mtime", "-7.5") +
                         paxRecord("size", "4") + paxRecord("someday", "x"),
                     'x') +
               entry("short", "1234", '0', field(124, "00000000001 ")) +
               entry("x", paxRecord("path", "not") + paxRecord("path", ""), 'x') +
               entry("old/", "x", '\0') + entry("K", std::string(600, 'k'), 'K') +
               entry("old/contiguous", "x", '7') + std::string(512, '\0'));
    EXPECT_EQ(result.end, End::done) << result.message;
    EXPECT_EQ(result.files, 4U);
    EXPECT_EQ(fs::file_size(inside_ / "base"), 3U);
    EXPECT_EQ(fs::file_size(inside_ / "blank"), 0U);
    EXPECT_EQ(fs::file_size(inside_ / "paxName"), 4U);
    EXPECT_TRUE(fs::exists(inside_ / "old/contiguous"));
    struct stat status {};
    ASSERT_EQ(stat((inside_ / "paxName").c_str(), &status), 0);
    EXPECT_EQ(status.st_mtim.tv_sec, -7);
}

TEST_F(HostileDumpTest, Damage) {
    const auto size = [](const std::string& text) { return entry("f", "", '0', field(124, text)); };
    auto flipped = good;
    flipped[3] ^= 1;
    const std::pair<std::string, std::string> cases[] = {
        {flipped, "damaged"},
        {size("0000000008x "), "damaged"},
        {size(std::string(12, '\xff')), "damaged"},
        {size("\x80" + std::string(11, '\x7f')), "damaged"},
        {size("77777777777 "), "more than"},
        {entry("g", "", 'g', field(124, "77777777777 ")), "more than"},
        {entry("x", "12 path=x\n", 'x'), "damaged"},
        {entry("x", "99999999999999999999 path=x\n", 'x'), "damaged"},
        {entry("x", "3 =", 'x'), "damaged"},
        {entry("x", "0 a=b\n", 'x'), "damaged"},
        {entry("x", paxRecord("size", "-1") + paxRecord("path", "y"), 'x'), "damaged"},
        {entry("x", paxRecord("size", "12x"), 'x'), "damaged"},
        {entry("x", paxRecord("size", "9223372036854775807"), 'x') + good, "more than"},
        {entry("L", std::string(1024 * 1024 + 1, 'n'), 'L'), "too long"},
        {std::string(600, 'n'), "damaged"},
        {"", "cut short"},
    };
    DumpOptions options;
    options.maximumBytes = 4'000'000;
    for (const auto& [damage, message] : cases) {
        const auto result = unpack(good + damage, options);
        EXPECT_EQ(result.end, End::failed) << damage.substr(0, 20);
        EXPECT_THAT(result.message, HasSubstr(message)) << damage.substr(124, 12);
        EXPECT_TRUE(fs::exists(inside_ / "good"));
        EXPECT_EQ(filesInside(), 1U);
    }
    for (const auto* nothing : {"", "x", "\x1f\x8b", "a text that is longer than a few bytes"})
        EXPECT_EQ(unpack(nothing).end, End::failed) << nothing;
    EXPECT_EQ(unpackDump(folder_.path / "absent", folder_.path / "new").end, End::failed);
    EXPECT_EQ(unpackDump(folder_.path, folder_.path / "new").end, End::failed);
    EXPECT_FALSE(fs::exists(folder_.path / "new"));
}

TEST_F(HostileDumpTest, CutAnywhere) {
    const auto whole = entry("folder/", "", '5') + good +
                       entry("x", paxRecord("path", "long"), 'x') +
                       entry("x", std::string(1500, 'x')) + theEnd;
    for (std::size_t length = 0; length <= whole.size(); length += 256) {
        const auto result = unpack(whole.substr(0, length));
        const bool isWhole = length + 512 >= whole.size();
        EXPECT_EQ(result.end, isWhole ? End::done : End::failed) << length;
        EXPECT_EQ(result.files, (length >= 1024 + 7 ? 1U : 0U) + (length >= 3072 + 1500 ? 1U : 0U));
        EXPECT_EQ(filesInside(), result.files + result.folders) << length;
    }
    const auto packed = *gzippedData(std::as_bytes(std::span(whole)));
    const std::string text(reinterpret_cast<const char*>(packed.data()), packed.size());
    for (std::size_t length = 0; length < text.size(); length++)
        EXPECT_EQ(unpack(text.substr(0, length)).end, End::failed) << length;
    auto flipped = text;
    flipped[text.size() - 6] ^= 1;
    EXPECT_THAT(unpack(flipped).message, HasSubstr("damaged")) << "the sum is wrong";
    EXPECT_EQ(unpack(text).end, End::done);
}

TEST_F(HostileDumpTest, MoreThanAnybodyWants) {
    std::string many;
    for (int count = 0; count < 1500; count++) many += entry("/" + std::to_string(count), "");
    const auto result = unpack(many + theEnd);
    ASSERT_EQ(result.skipped.size(), 1001U);
    EXPECT_EQ(result.skipped.back(), "and 500 more");

    const auto bomb = *gzippedData(std::vector<std::byte>(20'000'000));
    DumpOptions options;
    options.maximumBytes = 700'000;
    EXPECT_THAT(unpack(many + theEnd, options).message, HasSubstr("more than 700000 bytes"));
    const auto zeros = std::string(reinterpret_cast<const char*>(bomb.data()), bomb.size());
    EXPECT_THAT(unpack(zeros, options).message, HasSubstr("more than 700000 bytes"));
    EXPECT_EQ(unpack(zeros).end, End::done) << "an end, and nothing behind it";
    // Half a million folders in each other, from a name that is just not too long.
    std::string deep;
    while (deep.size() < 1024 * 1024) deep += "d/";
    const auto deepest = unpack(entry("L", deep, 'L') + entry("x", "", '5') + theEnd);
    EXPECT_EQ(deepest.end, End::done) << deepest.message;
    EXPECT_EQ(deepest.skipped.size(), 1U);
    EXPECT_EQ(filesInside(), 0U);
}

/// Each folder is a step away from the one before, or a few, not all the way.
TEST_F(HostileDumpTest, ManyNeighboursFarDown) {
    std::string deep;
    for (int level = 0; level < 490; level++) deep += "d/";
    std::string archive;
    for (int count = 0; count < 2000; count++)
        archive += entry("L", deep + (count % 2 ? "x/y/" : "z/") + std::to_string(count), 'L') +
                   entry("x", "", '5');
    const auto systemTime = [] {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_stime.tv_sec * 1000 + usage.ru_stime.tv_usec / 1000;
    };
    const auto before = systemTime();
    EXPECT_EQ(unpack(archive + theEnd).folders, 2000U);
    EXPECT_LT(systemTime() - before, 500) << "milliseconds";
}

/// A sparse file's map goes on as long as its blocks say so.
TEST_F(HostileDumpTest, MapWithoutEnd) {
    const auto sparse = entry("sparse", "", 'S', field(482, "\1")) + std::string(4'000'000, '\1');
    DumpOptions options;
    options.maximumBytes = 1'000'000;
    EXPECT_THAT(unpack(sparse, options).message, HasSubstr("more than 1000000 bytes"));
    EXPECT_THAT(unpack(sparse).message, HasSubstr("cut short"));
}

}  // namespace
}  // namespace supportsdk
