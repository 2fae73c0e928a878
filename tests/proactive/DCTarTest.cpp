#include "supportsdk/proactive/DCTar.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "tests/support/ResourceLimit.h"
#include "tests/support/TemporaryFolder.h"

namespace fs = std::filesystem;
using namespace std::string_literals;

namespace supportsdk {
namespace {

/// Mode and content of everything below; a link is shown as such.
std::map<std::string, std::string> contentsOf(const fs::path& folder) {
    std::map<std::string, std::string> contents;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        std::ostringstream line;
        line << std::oct << static_cast<unsigned>(entry.status().permissions()) << ' ';
        if (entry.is_symlink()) line << "-> " << fs::read_symlink(entry).string();
        if (entry.is_regular_file()) line << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        contents[entry.path().lexically_relative(folder).string()] = line.str();
    }
    return contents;
}

std::string namesOf(const fs::path& folder) {
    std::string names;
    for (const auto& [name, content] : contentsOf(folder)) {
        names += (names.empty() ? "" : " ") + name;
    }
    return names;
}

std::string letters(std::size_t count) {
    std::string text;
    while (text.size() < count) text += std::to_string(text.size()) + " ";
    return text.substr(0, count);
}

/// An entry as any program might write it, by literal offsets.
std::string entry(const std::string& name, char type, const std::string& content = "",
                  std::string size = "") {
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), "%011zo", content.size());
    if (size.empty()) size = digits.data();
    std::string block(512, '\0');
    block.replace(0, name.size(), name);
    block.replace(124, size.size(), size);
    block[156] = type;
    return block + content + std::string((512 - content.size() % 512) % 512, '\0');
}

class DCTarFiles : public testing::Test {
 protected:
    [[nodiscard]] std::string at(const std::string& name) const { return box.path / name; }
    void makeFolder(const std::string& name) const { fs::create_directories(box.path / name); }

    const test::TemporaryFolder box;
    std::optional<SupportError> error;
};

TEST_F(DCTarFiles, WhatItWritesOtherTarsReadBack) {
    const auto cut = std::string(60, 'e') + "/file";
    box.write("in/empty", "");
    box.write("in/one", letters(512));
    box.write("in/sub/many", letters(1024 * 1024));
    box.write("in/" + std::string(60, 'd') + "/" + cut, letters(1024));
    fs::permissions(at("in/one"), fs::perms(0640));
    fs::permissions(at("in/sub"), fs::perms(0710));
    ASSERT_TRUE(DCTar::tarFileAtPath(at("in"), at("a.tar"), &error));
    EXPECT_FALSE(error);

    for (const std::string tar : {"tar", "bsdtar"}) {
        const auto out = "out-" + tar;
        makeFolder(out);
        ASSERT_EQ(std::system((tar + " -xpf " + at("a.tar") + " -C " + at(out)).c_str()), 0);
        EXPECT_EQ(contentsOf(at(out)), contentsOf(at("in"))) << tar;
    }

    // The kit itself knows no prefixes, so the deep file would lie in a folder that is not there.
    makeFolder("out/" + std::string(60, 'e'));
    ASSERT_TRUE(DCTar::untarFileAtPath(at("a.tar"), at("out"), nullptr));
    EXPECT_EQ(box.read("out/" + cut), letters(1024));
    EXPECT_EQ(box.read("out/sub/many"), letters(1024 * 1024));
    EXPECT_TRUE(fs::is_empty(at("out/empty")));
}

TEST_F(DCTarFiles, ReadsWhatOtherTarsWrite) {
    box.write("in/odd", letters(513));
    box.write("in/sub/big", letters(700'001));
    for (const std::string tar :
         {"tar --format=gnu", "tar --format=ustar", "bsdtar --format=ustar", "tar --format=v7"}) {
        ASSERT_EQ(std::system((tar + " -cf " + at("a.tar") + " -C " + at("in") + " .").c_str()), 0);
        fs::remove_all(at("file"));
        fs::remove_all(at("memory"));
        ASSERT_TRUE(DCTar::untarFileAtPath(at("a.tar"), at("file"), nullptr));
        ASSERT_TRUE(DCTar::untarData(toBytes(box.read("a.tar")), at("memory/new"), nullptr));
        EXPECT_EQ(contentsOf(at("file")), contentsOf(at("in"))) << tar;
        EXPECT_EQ(contentsOf(at("memory/new")), contentsOf(at("in"))) << tar;
    }
}

TEST_F(DCTarFiles, AnOddFileIsFollowedByTwoBlocksOfPadding) {
    // Larger than any buffer, too.
    for (const std::size_t size : {513, 1024 * 1024 + 1}) {
        box.write("in/a", letters(size));
        box.write("in/b", "");
        ASSERT_TRUE(DCTar::tarFileAtPath(at("in"), at("a.tar"), nullptr));
        const auto archive = box.read("a.tar");
        ASSERT_EQ(archive.size(), 512 + size + 1024 + 512 + 1024);
        EXPECT_EQ(archive.substr(512, size + 511), letters(size) + std::string(511, '\0'));
        EXPECT_EQ(archive.substr(512 + size + 1024, 2), "b\0"s);
        EXPECT_TRUE(archive.ends_with(std::string(1024, '\0')));
    }
}

TEST_F(DCTarFiles, PacksWhatLinksLeadToAndNothingThatBlocks) {
    box.write("outside/file", letters(512));
    box.write("in/\xC3\xBC", "");
    fs::create_symlink(at("outside/file"), at("in/file"));
    fs::create_symlink(at("outside"), at("in/folder"));
    fs::create_symlink(at("nowhere"), at("in/dangling"));
    ASSERT_EQ(mkfifo(at("in/pipe").c_str(), 0600), 0);
    ASSERT_TRUE(DCTar::tarFileAtPath(at("in"), at("a.tar"), nullptr));
    EXPECT_EQ(fs::file_size(at("a.tar")), 512u * 4 + 1024) << "file, folder, and one without name";
    EXPECT_EQ(box.read("a.tar").find('\xC3'), std::string::npos);
    const auto other = FileHandle::forWritingAtPath(at("other"));
    EXPECT_FALSE(DCTar::chunkedWriteDataFromPath("pipe", at("in"), false, *other));
    EXPECT_FALSE(DCTar::chunkedWriteDataFromPath(at("in/pipe"), *other));
    ASSERT_TRUE(DCTar::untarFileAtPath(at("a.tar"), at("out"), nullptr));
    EXPECT_EQ(namesOf(at("out")) + box.read("out/file"), "file folder" + letters(512));
}

TEST_F(DCTarFiles, AFullDiskIsAFailure) {
    box.write("in/file", letters(600));
    const auto full = FileHandle::forWritingAtPath("/dev/full");
    EXPECT_FALSE(DCTar::writeHeaderForPath("file", at("in"), false, *full));
    EXPECT_FALSE(DCTar::chunkedWriteDataFromPath("file", at("in"), false, *full));
    EXPECT_FALSE(DCTar::chunkedWriteDataFromPath(at("in/file"), *full));
    EXPECT_FALSE(DCTar::writeFileDataForObject(toBytes("text"), 0, 4, "/dev/full"));
    EXPECT_FALSE(DCTar::tarFileAtPath(at("in"), at("no/such/folder.tar"), &error));
    EXPECT_FALSE(error);
    const test::ResourceLimit limit(RLIMIT_FSIZE, 1000);
    EXPECT_FALSE(DCTar::tarFileAtPath(at("in"), at("a.tar"), nullptr));
    EXPECT_FALSE(fs::exists(at("a.tar")));
}

TEST_F(DCTarFiles, NamesDecideWhatIsDone) {
    struct Row {
        std::string call;
        bool result;
        std::string error;
        std::string files;
    };
    // Before each: in/file, and of the others what is named.
    const Row rows[] = {
        {"compress no a.tar", false, "-2 file not found", "in in/file"},
        {"compress in a.tar", true, "", "a.tar in in/file"},
        {"compress in a.tar.gz", true, "", "a.tar.gz in in/file"},
        {"compress in a.zip", true, "", "in in/file"},
        {"compress in log.gz log", true, "", "in in/file log.gz"},
        {"compress in log.gz", false, "", "in in/file"},
        {"compress in no/a.tar", true, "-3 unable to tar the file", "in in/file"},
        {"compress a.tar a.tar.gz a.tar", true, "-3 unable to tar the file", "a.tar in in/file"},
        {"decompress no.tar out", false, "-2 file not found", "in in/file"},
        {"decompress a.tar out a.tar", true, "", "in in/file out out/x"},
        {"decompress a.tar.gz out a.tar.gz", true, "", "a.tar.gz in in/file out out/x"},
        {"decompress log.gz out log.gz log", true, "", "in in/file log log.gz"},
        {"decompress log out log", true, "", "in in/file log"},
        {"decompress bad.tar.gz out bad.tar.gz", true, "", "bad.tar.gz in in/file"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.call);
        for (const auto& old : fs::directory_iterator(box.path)) fs::remove_all(old);
        std::istringstream words(row.call);
        std::string operation, source, target;
        words >> operation >> source >> target;
        box.write("in/file", letters(512));
        for (std::string name; words >> name;) {
            const auto tar = entry("x", '0', "text");
            const bool isPacked = name == "a.tar.gz" || name == "log.gz";
            box.write(name, isPacked ? toText(*DCTar::gzipCompress(toBytes(tar))) : tar);
        }
        error.reset();
        const auto& work =
            operation == "compress" ? DCTar::compressFileAtPath : DCTar::decompressFileAtPath;
        EXPECT_EQ(work(at(source), at(target), &error), row.result);
        EXPECT_EQ(error ? std::to_string(error->code) + " " + error->localizedDescription : "",
                  row.error);
        EXPECT_EQ(error ? error->domain : "Skepuk", "Skepuk");
        EXPECT_EQ(namesOf(box.path), row.files);
    }
    box.write("in/file", letters(512));
    ASSERT_TRUE(DCTar::compressFileAtPath(at("in"), at("b.tar.gz"), nullptr));
    const auto packed = box.read("b.tar.gz");
    EXPECT_TRUE(DCTar::decompressData(toBytes(packed), at("data"), nullptr));
    EXPECT_EQ(contentsOf(at("data")), contentsOf(at("in")));
    EXPECT_FALSE(DCTar::decompressData(toBytes(packed.substr(0, 60)), at("cut"), nullptr));
    EXPECT_FALSE(fs::exists(at("cut")));
}

TEST_F(DCTarFiles, AHostileNameIsMissingAndHarmsNothing) {
    box.write("outside/kept", "kept");
    box.write("in/dir/old", "old");
    fs::create_symlink(at("outside"), at("in/link"));
    fs::create_symlink(at("outside/kept"), at("in/linked"));
    ASSERT_EQ(mkfifo(at("in/pipe").c_str(), 0600), 0);
    const auto before = contentsOf(box.path);

    std::string archive = entry(at("outside/folder"), '5') + entry("link/folder", '5');
    for (const std::string& name : {at("outside/x"), "../x"s, "dir/../../outside/x"s, "link/x"s,
                                    "linked"s, "pipe"s, "dir"s, "no/x"s, "x/"s, "x\xFF"s}) {
        archive += entry(name, '0', "text") + entry(name, '0');
    }
    archive += entry("dir/old", '0').substr(0, 120);
    EXPECT_TRUE(DCTar::untarData(toBytes(archive), at("in"), nullptr));
    EXPECT_EQ(contentsOf(box.path), before);
}

TEST_F(DCTarFiles, AnOddEntryEndsAndTheNextIsFoundWhereItMustBe) {
    const auto sized = [](const std::string& size) { return entry("x", '0', "", size); };
    struct Row {
        std::string archive;
        /// "good" is what every archive ends with.
        std::string came;
    };
    const Row rows[] = {
        {"", "good"},
        {entry("./x", '5') + entry("x//y\n", '0', "text"), "good x x/y\n"},
        {entry(std::string(100, 'x'), '\0', "text"), "good " + std::string(100, 'x')},
        {entry("x", '2') + entry("y", '0', "text"), "good y"},
        {sized("-1"), "good"},
        {sized("77777777777"), ""},
        {sized("777777777777"), ""},
        {sized("\x80\0\0\0\0\0\0\0\0\0\x02\0"s), "good x"},
        {sized("     +1 "), "x"},
        {sized("9"), "good x"},
        {entry("x", '0', letters(5000)).substr(0, 700), ""},
    };
    for (const auto& row : rows) {
        fs::remove_all(at("in"));
        const auto archive = row.archive + entry("good", '0');
        EXPECT_TRUE(DCTar::untarData(toBytes(archive), at("in"), nullptr));
        EXPECT_EQ(namesOf(at("in")), row.came) << row.archive.substr(0, 140);
    }
    DCTar::untarData(toBytes(entry("last", '0', letters(512))), at("in"), nullptr);
    EXPECT_EQ(box.read("in/last"), letters(512));
}

TEST_F(DCTarFiles, OnlyAnEmptyFileTellsWhyItFailed) {
    const auto untar = [&](const std::string& archive, const std::string& target) {
        error.reset();
        EXPECT_TRUE(DCTar::untarData(toBytes(archive), target, &error));
        return error ? error->domain + " " + std::to_string(error->code) : "";
    };
    EXPECT_EQ(untar(entry("no/x", '0', "text"), at("a")), "");
    EXPECT_EQ(untar(entry("no/x", '0'), at("a")), "generic " + std::to_string(ENOENT));
    EXPECT_EQ(untar(std::string(1024, '\0'), at("a")), "generic " + std::to_string(EISDIR));
    box.write("file", "");
    EXPECT_EQ(untar(entry("x", '0'), at("file")), "generic " + std::to_string(ENOTDIR));
    EXPECT_EQ(untar("", at("file")), "");
}

TEST_F(DCTarFiles, FieldsAreReadAlikeFromMemoryAndFile) {
    box.write("archive", std::string(512, 'x') + entry("name", '5', "", " \t00017x") + "rest");
    const auto bytes = toBytes(box.read("archive"));
    const auto file = FileHandle::forReadingAtPath(at("archive"));
    const auto header = [](const TarObject& object, std::uintmax_t offset) {
        return DCTar::nameForObject(object, offset) + DCTar::typeForObject(object, offset) +
               std::to_string(DCTar::sizeForObject(object, offset));
    };
    for (const TarObject& object : {TarObject(bytes), TarObject(file.get())}) {
        EXPECT_EQ(header(object, 512), "name515");
        for (const auto beyond : {std::uintmax_t{1024}, UINTMAX_MAX - 100, UINTMAX_MAX}) {
            EXPECT_EQ(header(object, beyond), std::string("\0000", 2));
        }
        EXPECT_EQ(DCTar::dataForObject(object, {1024, SIZE_MAX}, 1024, SIZE_MAX), toBytes("rest"));
        EXPECT_TRUE(DCTar::writeFileDataForObject(object, 1024, 4, at("copy")));
        EXPECT_EQ(box.read("copy"), "rest");
        EXPECT_FALSE(DCTar::writeFileDataForObject(object, 1024, UINTMAX_MAX, at("copy")));
    }
    EXPECT_FALSE(DCTar::dataForObject({}, {}, 0, 4));
    Bytes field = toBytes("xxxx");
    DCTar::writeString("abc", field, 2);
    EXPECT_EQ(toText(field), "abxx");
    EXPECT_FALSE(DCTar::writeFileDataForObject({}, 0, 0, at("copy")));
}

}  // namespace
}  // namespace supportsdk
