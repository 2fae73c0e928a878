#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "supportsdk/core/Ciphers.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/proactive/CheckResponse.h"
#include "supportsdk/proactive/DumpUpload.h"
#include "supportsdk/proactive/Stack.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::ThrowsMessage;

TEST(CheckTest, TheRecordAndTheLineOfEachKind) {
    const CheckAppHealth health("memory", Check::invalidStatus - 1, "low");
    EXPECT_EQ(
        dumpJson(health.dict()),
        R"({"name":"memory","status_code":18446744073709551614,"status_detail":"low","type":1})");
    EXPECT_EQ(health.toString(),
              "CheckAppHealth@hashcode{name=memory, type=1, code=18446744073709551614, desc=low}");
    const CheckAppDump dump(0, std::nullopt, {nullptr});
    EXPECT_EQ(dumpJson(dump.dict()), R"({"name":"APP DUMP","status_code":0,"type":4})");
    EXPECT_EQ(dump.toString(), "CheckAppDump@hashcode{name=APP DUMP, type=4, code=0, desc=(null)}");
    EXPECT_THAT(dump.files, IsEmpty());
    EXPECT_EQ(CheckAppHardware("", 1, "").dict().value("status_detail", "none"), "");
    EXPECT_EQ(CheckAppHardware("", 1, "").toString() + CheckAppCloud("n", 1, "").toString(),
              "CheckAppHardware@hashcode{name=, type=2, code=1, desc=}"
              "CheckAppCloud@hashcode{name=n, type=3, code=1, desc=}");
}

TEST(CheckTest, WhatIsMissingIsNamed) {
    EXPECT_THAT([] { CheckAppHealth(std::nullopt, Check::invalidStatus, ""); },
                ThrowsMessage<std::invalid_argument>("new check instances must have a name"));
    EXPECT_THAT(
        [] { CheckAppDump(Check::invalidStatus, "", {}); },
        ThrowsMessage<std::invalid_argument>("new check instances must have a valid status code"));
}

TEST(StackTest, ACheckLeavesAllItsPlacesAtOnceAndEqualsOnlyItself) {
    const auto make = [] { return std::make_shared<const CheckAppHealth>("same", 1, "same"); };
    const auto a = make();
    const auto b = make();
    const auto c = make();
    Stack stack;
    EXPECT_EQ(stack.pop(), nullptr);
    stack.push(nullptr);
    stack.pushAll({b, a, nullptr, b, c, b});
    EXPECT_THAT(stack.contents(), ElementsAre(b, a, b, c, b));
    EXPECT_EQ(stack.takeFirst(), b);
    EXPECT_EQ(stack.pop(), b);
    EXPECT_THAT(stack.contents(), ElementsAre(a, c));
    EXPECT_EQ(stack.size(), 2U);
    stack.push(b);
    EXPECT_EQ(stack.takeFirst(), a);
    EXPECT_EQ(stack.pop(), b);
    EXPECT_EQ(stack.pop(), c);
    EXPECT_EQ(stack.takeFirst(), nullptr);
    EXPECT_EQ(stack.size(), 0U);
    const FileHandles files(2, std::make_shared<FileHandle>(-1));
    const auto dump = std::make_shared<const CheckAppDump>(1, "", files);
    stack.pushAll({a, dump, dump, dump});
    EXPECT_EQ(stack.takeFirstWithFiles(), dump);
    EXPECT_EQ(stack.fileCount(), 4U);
    EXPECT_EQ(stack.pop(), dump);
    EXPECT_EQ(stack.fileCount(), 0U);
}

TEST(CheckResponseTest, TheWholeNumberOfTheStatusDecides) {
    std::string ran;
    const auto callback = byIntegerStatus([&ran](const Json&) { ran += "success"; },
                                          [&ran](const Json&) { ran += "failure"; });
    const std::vector<std::pair<Json, std::string>> cases = {
        {{{"status", 200.9}}, "success"},
        {{{"status", " +200 OK"}}, "success"},
        {{{"status", "2000"}}, "failure"},
        {{{"status", 404}}, "failure"},
        {{{"status", std::uint64_t{4294967496}}}, "failure"},
        {{{"status", nullptr}}, "failure"},
        {{{"status", {200}}}, "failure"},
        {Json::object(), "failure"},
        {{{"status", 200}, {"message", "?"}, {"com.goquorrand.supportsdk.unreadable", true}}, ""},
        {{200}, ""},
    };
    for (const auto& [response, expected] : cases) {
        ran.clear();
        callback(response);
        EXPECT_EQ(ran, expected) << response;
        byIntegerStatus(nullptr, nullptr)(response);
    }
}

class DumpUploadTest : public testing::Test {
 protected:
    std::shared_ptr<FileHandle> fileOf(const std::string& content) {
        return FileHandle::forReadingAtPath(folder.write("dump", content));
    }
    std::string problemOf(const char* name) {
        const auto file = FileHandle::forReadingAtPath(folder.path / name);
        return file ? dumpUploadBody(Json::object(), *file, always).problem : "no file";
    }

    const std::function<bool()> always = [] { return true; };
    TemporaryFolder folder;
};

TEST_F(DumpUploadTest, TheBodyByteForByte) {
    const std::size_t aPieceAndMore = 200001;
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{47}, std::size_t{48}, std::size_t{49}, aPieceAndMore}) {
        std::string content;
        for (std::size_t at = 0; at < size; ++at) content += static_cast<char>(at * at % 251);
        const auto encoded = base64Encode(toBytes(content));
        std::string expected = R"({"members_id":"\"1","file_data":")";
        for (std::size_t at = 0; at < encoded.size(); ++at) {
            expected += encoded[at];
            if (at % 64 == 63) expected += "\\n";
        }
        expected += "\"}";
        const auto body = dumpUploadBody({{"members_id", "\"1"}}, *fileOf(content), always);
        EXPECT_EQ(body.problem, "") << size;
        EXPECT_TRUE(toText(body.json) == expected) << size;
    }
    const auto file = fileOf("");
    std::filesystem::resize_file(folder.path / "dump", maximumDumpBytes);
    std::ofstream(folder.path / "dump", std::ios::app) << "M";
    std::error_code error;
    ASSERT_TRUE(file->seek(maximumDumpBytes, error)) << "of a file that is too long as a whole";
    const auto whatIsLeft = dumpUploadBody(Json::object(), *file, always);
    EXPECT_EQ(parseJson(toText(whatIsLeft.json)), Json({{"file_data", "TQ=="}}));
    ASSERT_TRUE(file->seek(maximumDumpBytes + 9, error));
    EXPECT_EQ(dumpUploadBody(Json::object(), *file, always).problem, "");
}

TEST_F(DumpUploadTest, FilesThatMightNeverEndAreNotRead) {
    ASSERT_EQ(mkfifo((folder.path / "pipe").c_str(), 0600), 0);
    std::filesystem::create_directory(folder.path / "folder");
    std::filesystem::resize_file(folder.write("long", ""), maximumDumpBytes + 1);
    EXPECT_EQ(problemOf("pipe"), "The file is not a plain file.");
    EXPECT_EQ(problemOf("folder"), "The file is not a plain file.");
    EXPECT_EQ(problemOf("long"), "The file is too long to be uploaded.");
    FileHandle writable(::open((folder.write("other", "")).c_str(), O_WRONLY | O_CLOEXEC));
    EXPECT_EQ(dumpUploadBody(Json::object(), writable, always).problem, "The file cannot be read.");
}

TEST_F(DumpUploadTest, AFileThatGrowsOrIsNotWantedAnyMoreEndsTheReading) {
    const auto file = fileOf(std::string(1000, 'x'));
    const auto path = folder.path / "dump";
    std::filesystem::resize_file(path, maximumDumpBytes);
    int pieces = 0;
    const auto grow = [&] {
        std::filesystem::resize_file(path, maximumDumpBytes + 1);
        return ++pieces > 0;
    };
    EXPECT_THAT(dumpUploadBody(Json::object(), *file, grow).problem, HasSubstr("too long"));
    const auto again = fileOf(std::string(1000000, 'x'));
    pieces = 0;
    EXPECT_NE(dumpUploadBody(Json::object(), *again, [&] { return ++pieces < 3; }).problem, "");
    EXPECT_EQ(pieces, 3);
}

}  // namespace
}  // namespace supportsdk::test
