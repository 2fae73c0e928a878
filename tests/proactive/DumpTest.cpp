#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include "supportsdk/proactive/Dump.h"
#include "supportsdk/proactive/files/FolderWalk.h"
#include "supportsdk/proactive/files/TargetFolder.h"
#include "tests/support/NoLocks.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk {
namespace {

namespace fs = std::filesystem;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;
using End = DumpResult::End;

/// Permissions, time and content by path; a folder's content is "/".
using Tree = std::map<std::string, std::string>;

std::string contentOf(int folder, const char* name) {
    FileHandle file(openat(folder, name, O_RDONLY | O_CLOEXEC));
    std::string content(file.size(), '\0');
    std::error_code error;
    file.read(std::as_writable_bytes(std::span(content)), error);
    return content;
}

Tree treeOf(const fs::path& folder) {
    Tree tree;
    const auto visit = [&](const FolderEntry& entry) {
        struct stat status {};
        EXPECT_EQ(fstatat(entry.folder, entry.name, &status, AT_SYMLINK_NOFOLLOW), 0);
        tree[entry.path] = std::to_string(status.st_mode & 0777) + " " +
                           std::to_string(status.st_mtim.tv_sec) + " " +
                           (entry.isFolder ? "/" : contentOf(entry.folder, entry.name));
        return Walk::goesOn;
    };
    walkFolder(folder, visit);
    return tree;
}

std::string bytes(std::size_t count) {
    std::string text(count, '\0');
    unsigned state = 1;
    for (auto& letter : text)
        letter = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    return text;
}

bool run(const std::string& command) {
    return std::system(("LC_ALL=C.UTF-8; export LC_ALL; " + command + " 2>/dev/null").c_str()) == 0;
}

class DumpTest : public testing::Test {
 protected:
    DumpResult pack(const DumpOptions& options = {}) {
        return packDump({folder_.path / "in"}, archive_, options);
    }
    DumpResult unpack(const std::string& archive, const DumpOptions& options = {}) {
        fs::remove_all(out_);
        return unpackDump(archive, out_, options);
    }
    void add(const std::string& name, const std::string& content, mode_t mode = 0644,
             std::int64_t modified = 1'700'000'000) {
        std::error_code error;
        const auto slash = name.rfind('/');
        if (slash != std::string::npos) in_->makeFolder(name.substr(0, slash), error);
        const auto file = in_->makeFile(name, error);
        ASSERT_TRUE(file) << error.message();
        ASSERT_TRUE(file->write(std::as_bytes(std::span(content)), error));
        file->setAttributes(mode, modified, error);
    }
    std::vector<std::string> filesBeside() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder_.path))
            names.push_back(entry.path().filename());
        return names;
    }

    ~DumpTest() override { umask(umask_); }

    const mode_t umask_ = umask(0);
    TemporaryFolder folder_{test::folderInMemory()};
    std::string archive_ = folder_.path / "dump.tar.gz";
    fs::path out_ = folder_.path / "out";
    std::error_code error_;
    std::optional<TargetFolder> in_ = TargetFolder::create(folder_.path / "in", error_);
};

TEST_F(DumpTest, EveryTarGetsBackWhatWasPacked) {
    const std::string longest(255, 'n');
    for (const std::size_t size : {0, 1, 511, 512, 513, 1024, 300'000})
        add("sizes/" + std::to_string(size), bytes(size));
    for (const std::size_t length : {100, 101, 102, 255}) {
        add(std::string(length - 3, 'x'), "a");
        add("p/" + std::string(length - 5, 'y') + "/" + std::string(90, 'z'), "b");
    }
    add(longest + "/" + longest, "at three levels");
    add("Gr\xc3\xbc\xc3\x9f"
        "e/\xe2\x82\xac",
        "UTF-8");
    add("\xc3\xa4", "composed");
    add("a\xcc\x88", "decomposed");
    add("l\xe4tin", "one");
    add("two\nlines", "\n", 0600);
    add("modes/all", "", 0777);
    add("modes/few", "secret", 0400);
    add("times/before", "", 0644, -1'000'000'001);
    add("times/after", "", 0644, 8'589'934'592);
    ASSERT_TRUE(in_->makeFolder("empty/folder", error_));
    ASSERT_TRUE(in_->openFolder("times", error_)->setAttributes(0750, 12345, error_));
    ASSERT_TRUE(in_->openFolder("empty", error_)->setAttributes(0711, -12345, error_));

    DumpProgress last;
    DumpOptions options;
    options.progress = [&](const DumpProgress& progress) { last = progress; };
    const auto result = pack(options);
    ASSERT_EQ(result.end, End::done) << result.message;
    EXPECT_THAT(result.skipped, ElementsAre());
    EXPECT_EQ(last.bytesDone, last.bytesTotal);
    EXPECT_EQ(last.filesDone, result.files);
    const auto packed = treeOf(folder_.path / "in");
    EXPECT_EQ(result.files + result.folders, packed.size() + 1);
    EXPECT_TRUE(run("gzip -t " + archive_));
    EXPECT_TRUE(run("gzip -dc " + archive_ + " | tail -c 1024 | cmp -n 1024 - /dev/zero"));

    for (const std::string tar : {"tar", "bsdtar", "LC_ALL=C bsdtar"}) {
        fs::create_directory(out_);
        EXPECT_TRUE(run(tar + " -xpzf " + archive_ + " -C " + out_.string())) << tar;
        EXPECT_EQ(treeOf(out_ / "in"), packed) << tar;
        fs::remove_all(out_);
    }

    // Longer than the system takes a path, which other tars leave out.
    std::string deep;
    for (int level = 0; level < 20; level++) deep += longest.substr(level) + "/";
    add(deep + "bottom", "5,000 bytes away");
    ASSERT_EQ(pack().end, End::done);
    const auto unpacked = unpack(archive_, options);
    EXPECT_EQ(unpacked.end, End::done) << unpacked.message;
    EXPECT_EQ(last.bytesTotal, fs::file_size(archive_));
    EXPECT_EQ(last.bytesDone, last.bytesTotal);
    EXPECT_EQ(last.filesDone, unpacked.files);
    EXPECT_THAT(unpacked.skipped, ElementsAre());
    EXPECT_EQ(treeOf(out_ / "in"), treeOf(folder_.path / "in"));
}

TEST_F(DumpTest, WhatIsPackedIsNotTooDeepToBeUnpacked) {
    std::string deep;
    for (int level = 0; level < 498; level++) deep += "d/";
    fs::create_directories(folder_.path / "in" / deep / "folder/x/y");
    folder_.write("in/" + deep + "folder/x/file", "in the 502nd level");
    const auto result = pack();
    EXPECT_THAT(result.skipped, ElementsAre("in/" + deep + "folder/x"));
    EXPECT_THAT(unpack(archive_).skipped, ElementsAre());
    EXPECT_TRUE(fs::exists(out_ / "in" / deep / "folder"));
}

TEST_F(DumpTest, WhatHasNoLengthBeforeItIsRead) {
    const auto result = packDump({"/proc/self/cmdline"}, archive_);
    EXPECT_THAT(result.skipped, ElementsAre());
    ASSERT_EQ(unpack(archive_).end, End::done);
    std::ifstream content(out_ / "cmdline");
    std::string command;
    EXPECT_TRUE(std::getline(content, command, '\0')) << "an empty file";
}

TEST_F(DumpTest, SourcesUnderTheirLastNames) {
    add("a/file", "1");
    add("b/a/file", "2");
    add("a.txt", "3");
    const auto in = (folder_.path / "in").string();
    fs::create_symlink(in + "/a.txt", in + "/b/link");
    fs::create_symlink(in + "/a", in + "/b/folderLink");
    fs::create_symlink("nowhere", in + "/b/dangling");
    ASSERT_EQ(mkfifo((in + "/b/pipe").c_str(), 0600), 0);

    const auto result = packDump({in + "/a///", in + "/b/a", in + "/a.txt", in + "/b/a/..", "/", "",
                                  in + "/absent", in + "/a.txt/", in + "/a" + '\0'},
                                 archive_);
    EXPECT_EQ(result.end, End::done) << result.message;
    EXPECT_THAT(result.skipped,
                UnorderedElementsAre(in + "/b/a", "/", "", in + "/absent", in + "/a.txt/",
                                     in + "/a" + '\0', "b/folderLink", "b/dangling", "b/pipe"));
    EXPECT_EQ(unpack(archive_).files, 4U);
    EXPECT_EQ(treeOf(out_)["a/file"].back(), '1');
    EXPECT_EQ(treeOf(out_)["b/link"].back(), '3');

    EXPECT_EQ(packDump({}, archive_).end, End::failed);
    EXPECT_EQ(packDump({"/", "absent"}, folder_.path / "new.tar.gz").end, End::failed);
    EXPECT_EQ(packDump({in}, folder_.path / "absent/new.tar.gz").end, End::failed);
    EXPECT_EQ(packDump({in}, in).end, End::failed);
    EXPECT_EQ(packDump({archive_}, archive_).end, End::failed) << "nothing but the target";
    EXPECT_EQ(unpack(archive_).files, 4U);
    EXPECT_THAT(filesBeside(), UnorderedElementsAre("in", "out", "dump.tar.gz"));
}

/// What a killed process left beside the target, what somebody else is writing there, and a target
/// that lies among its sources.
TEST_F(DumpTest, TargetAndItsGrowingPart) {
    add("file", "content");
    const auto target = folder_.path / "in/old.tar.gz";
    folder_.write("in/old.tar.gz", "former dump");
    folder_.write("in/old.tar.gz.part", "left by a process that was killed");
    DumpOptions options;
    DumpResult second;
    options.progress = [&](const DumpProgress&) {
        if (second.message.empty()) second = packDump({folder_.path / "in/file"}, target);
    };
    const auto first = packDump({folder_.path / "in"}, target, options);
    EXPECT_EQ(first.end, End::done) << first.message;
    EXPECT_EQ(second.end, End::failed) << "two at once";
    EXPECT_EQ(unpack(target).files, 1U);
    EXPECT_FALSE(fs::exists(target.string() + ".part"));

    const auto outside = folder_.write("outside", "precious");
    fs::create_symlink(outside, archive_ + ".part");
    EXPECT_EQ(pack().end, End::failed);
    EXPECT_EQ(contentOf(AT_FDCWD, outside.c_str()), "precious");
    fs::remove(archive_ + ".part");
    fs::create_hard_link(outside, archive_ + ".part");
    const auto before = fs::current_path();
    fs::current_path(folder_.path);
    EXPECT_EQ(packDump({"in"}, "dump.tar.gz").end, End::done);
    fs::current_path(before);
    EXPECT_EQ(contentOf(AT_FDCWD, outside.c_str()), "precious");
}

TEST_F(DumpTest, TargetThatIsNoPlainFileStays) {
    add("file", "content");
    const auto outside = folder_.write("outside", "precious");
    ASSERT_EQ(mkfifo((folder_.path / "pipe").c_str(), 0600), 0);
    fs::create_symlink(outside, folder_.path / "link");
    for (const auto* name : {"pipe", "link"}) {
        const auto result = packDump({folder_.path / "in"}, folder_.path / name);
        EXPECT_THAT(result.message, HasSubstr("File exists")) << name;
    }
    DumpOptions options;
    options.progress = [&](const DumpProgress&) { mkfifo(archive_.c_str(), 0600); };
    EXPECT_EQ(pack(options).end, End::failed) << "it came meanwhile";
    EXPECT_TRUE(fs::is_fifo(folder_.path / "pipe") && fs::is_fifo(archive_));
    EXPECT_TRUE(fs::is_symlink(folder_.path / "link"));
    EXPECT_EQ(filesBeside().size(), 5U);
}

TEST_F(DumpTest, LongestNameOfATarget) {
    add("file", "content");
    // 125 letters of two bytes: the cut would fall between the two.
    std::string name;
    while (name.size() < 250) name += "\xc3\xa4";
    const auto target = folder_.path / (name + "a.tgz");
    DumpOptions options;
    options.progress = [&](const DumpProgress&) {
        for (const auto& beside : filesBeside())
            EXPECT_TRUE(beside == "in" || beside.starts_with("\xc3")) << beside;
    };
    EXPECT_EQ(packDump({folder_.path / "in"}, target, options).end, End::done);
    EXPECT_THAT(filesBeside(), UnorderedElementsAre("in", target.filename()));
    EXPECT_EQ(packDump({folder_.path / "in"}, target.string() + "z").end, End::failed);
}

TEST_F(DumpTest, FileSystemWithoutLocks) {
    const test::NoLocks noLocks;
    add("file", "content");
    folder_.write("dump.tar.gz.part", "left by a process that was killed");
    DumpOptions options;
    DumpResult second;
    options.progress = [&](const DumpProgress&) {
        if (second.files == 0) second = packDump({folder_.path / "in/file"}, archive_);
    };
    EXPECT_EQ(pack(options).end, End::failed) << "its growing file went as a leftover";
    EXPECT_EQ(second.end, End::done) << second.message;
    EXPECT_EQ(unpack(archive_).folders, 0U) << "the second one's";
    EXPECT_THAT(filesBeside(), UnorderedElementsAre("in", "out", "dump.tar.gz"));
}

TEST_F(DumpTest, NothingIsLeftOfWhatWasStopped) {
    add("big", bytes(8'000'000));
    ASSERT_EQ(pack().end, End::done);
    const auto former = contentOf(AT_FDCWD, archive_.c_str());
    std::uintmax_t last = 0;
    std::stop_source source;
    DumpOptions options;
    options.stop = source.get_token();
    options.progress = [&](const DumpProgress& progress) {
        EXPECT_LE(progress.bytesDone, last + 1024 * 1024);
        last = progress.bytesDone;
        const auto growing = fs::status(out_ / "in/big");
        EXPECT_TRUE(!fs::exists(growing) || growing.permissions() == fs::perms(0600));
        if (progress.bytesDone > 2'000'000) source.request_stop();
    };
    EXPECT_EQ(pack(options).end, End::cancelled);
    EXPECT_LT(last, 4'000'000U);
    EXPECT_EQ(contentOf(AT_FDCWD, archive_.c_str()), former);
    last = 0;
    EXPECT_EQ(unpack(archive_, options).end, End::cancelled) << "before the first byte";

    source = {};
    options.stop = source.get_token();
    EXPECT_EQ(unpack(archive_, options).end, End::cancelled);
    EXPECT_EQ(treeOf(out_).size(), 1U) << "the folder";

    add("last", "");
    add("none", "");
    source = {};
    options.stop = source.get_token();
    options.progress = [&](const DumpProgress& progress) {
        EXPECT_NE(progress.path, "in/none");
        if (progress.path == "in/last") source.request_stop();
    };
    EXPECT_EQ(pack(options).end, End::cancelled);

    options = {};
    options.progress = [](const DumpProgress&) { throw std::runtime_error("against the rules"); };
    EXPECT_THROW(pack(options), std::runtime_error);
    options = {};
    options.compressionLevel = 10;
    EXPECT_EQ(pack(options).end, End::failed);
    EXPECT_THAT(filesBeside(), UnorderedElementsAre("in", "out", "dump.tar.gz"));
    options.compressionLevel = 1;
    EXPECT_EQ(pack(options).end, End::done);
    constexpr char fastest = 4;
    EXPECT_EQ(contentOf(AT_FDCWD, archive_.c_str())[8], fastest) << "RFC 1952, XFL";
}

TEST_F(DumpTest, AFullDiskAndTooManyOpenFiles) {
    add("big", bytes(2'000'000));
    ASSERT_EQ(pack().end, End::done);
    {
        const test::ResourceLimit limit(RLIMIT_FSIZE, 300'000);
        EXPECT_THAT(pack().message, HasSubstr("cannot write " + archive_));
        EXPECT_THAT(unpack(archive_).message, HasSubstr("cannot write in/big"));
    }
    EXPECT_THAT(filesBeside(), UnorderedElementsAre("in", "out", "dump.tar.gz"));
    std::optional<test::ResourceLimit> limit;
    DumpOptions options;
    options.progress = [&](const DumpProgress& progress) {
        if (progress.path == "in/big" && !limit) limit.emplace(RLIMIT_NOFILE, 3);
    };
    EXPECT_THAT(unpack(archive_, options).message, HasSubstr("cannot write in/big"));
    limit.reset();
    EXPECT_TRUE(fs::is_empty(out_ / "in"));
}

TEST_F(DumpTest, FilesThatChangeMeanwhile) {
    for (const auto* name : {"1 trigger", "2 gone", "3 grows", "4 shrinks", "5 stays"})
        add(name, bytes(700'000));
    const auto in = folder_.path / "in";
    DumpOptions options;
    options.progress = [&](const DumpProgress& progress) {
        if (progress.path == "in/1 trigger") fs::remove(in / "2 gone");
        if (progress.path == "in/3 grows") fs::resize_file(in / "3 grows", 5'000'000);
        if (progress.path == "in/4 shrinks") fs::resize_file(in / "4 shrinks", 1000);
    };
    const auto result = pack(options);
    EXPECT_EQ(result.end, End::done) << result.message;
    EXPECT_THAT(result.skipped, ElementsAre("in/2 gone", "in/4 shrinks"));

    EXPECT_EQ(unpack(archive_).files, 4U);
    const auto content = [&](const char* name) {
        return contentOf(AT_FDCWD, (out_ / "in" / name).c_str());
    };
    EXPECT_EQ(content("3 grows"), bytes(700'000));
    EXPECT_EQ(content("4 shrinks"), bytes(700'000).substr(0, 1000) + std::string(699'000, '\0'));
    EXPECT_EQ(content("5 stays"), bytes(700'000));
}

TEST_F(DumpTest, UmaskAndFoldersThatWereThere) {
    add("open", "", 0777);
    for (const auto* name : {"fresh/below", "keep/below"}) {
        ASSERT_TRUE(in_->makeFolder(name, error_));
        ASSERT_TRUE(in_->openFolder(name, error_)->setAttributes(0777, 99, error_));
    }
    ASSERT_TRUE(in_->openFolder("keep", error_)->setAttributes(0777, 99, error_));
    ASSERT_EQ(pack().end, End::done);

    auto target = TargetFolder::create(out_, error_);
    ASSERT_TRUE(target->makeFolder("in/keep/below", error_));
    for (const std::string name : {"in/keep/below", "in/keep"})
        ASSERT_TRUE(target->openFolder(name, error_)->setAttributes(0700, 5, error_));
    umask(027);
    EXPECT_EQ(unpackDump(archive_, out_).end, End::done);
    auto tree = treeOf(out_ / "in");
    EXPECT_EQ(tree["open"], "488 1700000000 ") << "rwxr-x---";
    EXPECT_EQ(tree["fresh/below"], "488 99 /");
    EXPECT_EQ(tree["keep"] + tree["keep/below"], "448 5 /448 5 /") << "rwx------";
}

TEST_F(DumpTest, ArchivesOfOtherTars) {
    const std::string path = std::string(90, 'a') + "/" + std::string(95, 'b');
    for (const std::size_t size : {0, 1, 513, 100'000})
        add("n" + std::to_string(size), bytes(size));
    add(path, "needs two fields", 0640);
    add("private/file", "", 0400, 1);
    ASSERT_TRUE(in_->openFolder("private", error_)->setAttributes(0710, 99, error_));
    add(std::string(90, 'a') + "/" + std::string(200, 'c'), "needs an extension", 0640, -1);
    const auto rich = treeOf(folder_.path / "in");

    const auto cd = "cd " + folder_.path.string() + " && ";
    for (const std::string make :
         {"tar --format=gnu -cf", "tar --format=oldgnu -czf", "tar --format=pax -czf",
          "bsdtar --format=pax -cf", "tar --no-recursion $(find in -depth) -cf"}) {
        ASSERT_TRUE(run(cd + make + " foreign in")) << make;
        const auto result = unpack(folder_.path / "foreign");
        EXPECT_EQ(result.end, End::done) << make << ": " << result.message;
        EXPECT_EQ(treeOf(out_ / "in"), rich) << make;
    }
    fs::remove(folder_.path / "in" / std::string(90, 'a') / std::string(200, 'c'));
    const auto simple = treeOf(folder_.path / "in");
    for (const std::string make : {"tar --format=ustar -cf", "bsdtar --format=ustar -cf",
                                   "tar --format=v7 --exclude=a*a -cf"}) {
        ASSERT_TRUE(run(cd + make + " foreign ./in")) << make;
        EXPECT_EQ(unpack(folder_.path / "foreign").end, End::done) << make;
        auto expected = simple;
        if (make.find("v7") != std::string::npos)
            std::erase_if(expected, [](const auto& entry) { return entry.first[0] == 'a'; });
        EXPECT_EQ(treeOf(out_ / "in"), expected) << make;
    }

    // Several streams of gzip are one, and what is behind them is nobody's.
    add("n0", bytes(700'000));
    ASSERT_TRUE(run(cd + "tar -cf a in && head -c 1025 a | gzip > b && tail -c +1026 a | gzip >> b"
                         " && gzip < /dev/null >> b && echo garbage >> b"));
    EXPECT_EQ(unpack(folder_.path / "b").end, End::done);
    EXPECT_EQ(treeOf(out_ / "in"), treeOf(folder_.path / "in"));

    // Links and sparse files are told, and what is behind them comes.
    fs::create_hard_link(folder_.path / "in/n1", folder_.path / "in/o1");
    fs::create_symlink("n1", folder_.path / "in/o2");
    add("sparse", "");
    fs::resize_file(folder_.path / "in/sparse", 3'000'000);
    for (int place = 0; place < 40; place++) {
        std::fstream file(folder_.path / "in/sparse", std::ios::in | std::ios::out);
        file.seekp(place * 65536) << "x";
    }
    add("z", "last");
    for (const std::string make : {"tar --format=gnu -Scf", "tar --format=pax -Scf"}) {
        ASSERT_TRUE(run(cd + make + " foreign --sort=name in")) << make;
        const auto result = unpack(folder_.path / "foreign");
        EXPECT_EQ(result.end, End::done) << make << ": " << result.message;
        EXPECT_THAT(result.skipped, UnorderedElementsAre("in/o1", "in/o2", "in/sparse")) << make;
        EXPECT_TRUE(fs::exists(out_ / "in/z")) << make;
    }
}

}  // namespace
}  // namespace supportsdk
