#include "supportsdk/proactive/SupportSDKProactive.h"

#include "supportsdk/core/Fields.h"
#include "supportsdk/proactive/DumpUpload.h"
#include "tests/core/SupportFixture.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::ThrowsMessage;

class ProactiveTest : public SupportTest {
 protected:
    ProactiveTest() {
        fakes.mainBundle->files = {{"support.json", acme.dump()}, {"list.json", "[{}]"}};
        proactive = SupportSDKProactive::create("support", std::nullopt, fakes.platform);
    }

    void settingsArrive(bool isEnabled = true) {
        fakes.http->answerTo("/app/get", 200, {{"supportProactiveEnabled", isEnabled}});
        fakes.http->sent.clear();
        fakes.log->lines.clear();
    }
    void queue(const std::vector<std::string>& names) {
        for (const auto& name : names) proactive->putAppHealthCheck(name, 1, std::nullopt);
    }
    std::shared_ptr<FileHandle> file(const std::string& content) {
        return FileHandle::forReadingAtPath(folder.write(std::to_string(++files), content));
    }

    /// The names of the checks of each request, the data of each dump.
    std::vector<std::string> sent() const {
        std::vector<std::string> requests;
        for (const auto& [request, completion] : fakes.http->sent) {
            const auto body = parseJson(toText(request.body)).value_or(Json());
            std::string text = stringForKey(body, "file_data").value_or("");
            for (const auto& check : arrayForKey(body, "checks"))
                text += stringForKey(check, "name").value_or("?") + ";";
            requests.push_back(text);
        }
        return requests;
    }
    std::vector<std::string> logged() const {
        auto lines = fakes.log->lines;
        std::erase_if(lines, [](const auto& line) { return line.ends_with(" seconds"); });
        return lines;
    }

    TemporaryFolder folder;
    int files = 0;
    std::shared_ptr<SupportSDKProactive> proactive;
};

TEST_F(ProactiveTest, ABatchWaitsForTheSettingsAndTurnsRoundEachTime) {
    queue({"A", "B", "C"});
    proactive->putCheck(proactive->stack.contents()[0]);
    EXPECT_EQ(proactive->timeToWait, 5U);
    EXPECT_EQ(proactive->flushChecks(), 0);
    EXPECT_EQ(proactive->stack.size(), 4U);
    proactive->checkQueueFlushHandler();
    queue({"D"});
    std::string waiting;
    for (const auto& check : proactive->stack.contents()) waiting += check->name;
    EXPECT_EQ(waiting, "ACBD") << "what was pushed twice went once";
    EXPECT_THAT(logged(), IsEmpty());
    settingsArrive();
    proactive->checkQueueFlushHandler();
    EXPECT_THAT(sent(), ElementsAre("D;B;C;A;"));
    proactive->checkQueueFlushHandler();
    EXPECT_THAT(sent(), testing::SizeIs(1));
    EXPECT_THAT(logged(), IsEmpty()) << "an empty queue is no news";
}

TEST_F(ProactiveTest, TheRequestNamesWhomItIsFor) {
    settingsArrive();
    proactive->sdk->identity = {
        IdentityValue("1"), {}, IdentityValue(&Json::object()["null"]), IdentityValue("4")};
    for (const auto& nobody : {Json::object(), Json("x")})
        proactive->getCustomerWithInformation(nobody);
    proactive->putCheck(std::make_shared<CheckAppCloud>("reach", 7, "slow"), false);
    const auto& request = fakes.http->request(0);
    EXPECT_EQ(request.method + " " + request.url,
              "POST https://api.now.example/sdk/v1/technology/putChecks");
    const Json check = {
        {"type", 3}, {"name", "reach"}, {"status_code", 7}, {"status_detail", "slow"}};
    EXPECT_EQ(parseJson(toText(request.body)), Json({{"members_id", "1"},
                                                     {"members_locations_id", nullptr},
                                                     {"members_devices_id", "4"},
                                                     {"checks", Json::array({check})}}));
    proactive->putAppHardwareCheck("fan", 1, "");
    proactive->putAppCloudCheck("sync", 2, std::nullopt);
    EXPECT_EQ(proactive->stack.contents()[0]->type, CheckType::appHardware);
    EXPECT_EQ(proactive->stack.contents()[1]->type, CheckType::appCloud);
}

TEST_F(ProactiveTest, WhatIsNotSentIsLogged) {
    const auto unknown = std::make_shared<Check>(CheckType::unknown, "x", 2, "y");
    proactive->putCheck(unknown, true);
    proactive->putCheck(unknown, false);
    proactive->postChecksToCloud({});
    proactive->putCheck(nullptr);
    proactive->putCheck(std::make_shared<CheckAppHealth>("early", 1, ""), false);
    EXPECT_EQ(proactive->stack.size(), 1U) << "the foreground waits for settings, too";
    const std::string skipped =
        "skipping unknown check of type unknown (Check@hashcode{name=x, type=-1, code=2, desc=y})";
    EXPECT_THAT(logged(),
                ElementsAre(skipped, skipped, "list of checks to POST is empty, aborting"));
    settingsArrive(false);
    proactive->checkQueueFlushHandler();
    EXPECT_THAT(logged(), ElementsAre("proactive feature disabled - ignoring checks"));
    EXPECT_EQ(proactive->stack.size() + fakes.http->sent.size(), 0U);
}

TEST_F(ProactiveTest, TheQueueKeepsItsLimitAndSaysSoOnceAFlush) {
    queue({"1", "2"});
    queue(std::vector<std::string>(SupportSDKProactive::maximumQueuedChecks, "later"));
    EXPECT_EQ(proactive->stack.contents().front()->name, "later");
    EXPECT_THAT(logged(), testing::SizeIs(1));
    proactive->checkQueueFlushHandler();
    EXPECT_EQ(proactive->stack.size(), SupportSDKProactive::maximumQueuedChecks);
    queue({"3", "4"});
    EXPECT_THAT(logged(), testing::SizeIs(2));
    EXPECT_EQ(proactive->stack.size(), SupportSDKProactive::maximumQueuedChecks);
    queue({std::string(SupportSDKProactive::maximumQueuedBytes - 5, 'x')});
    EXPECT_EQ(proactive->stack.size(), 3U) << "\"3\" and \"4\" have room beside it";
}

TEST_F(ProactiveTest, WhatWaitsHoldsFewFilesOpen) {
    const auto held = file("M");
    const auto limit = SupportSDKProactive::maximumWaitingFiles;
    queue({"A"});
    proactive->putAppDumpCheckWithFiles(FileHandles(limit + 1, held), 1, std::nullopt);
    queue({std::string(SupportSDKProactive::maximumQueuedBytes + 1, 'x')});
    ASSERT_EQ(proactive->stack.size(), 1U) << "too much by itself, it takes nothing else along";
    for (std::size_t i = 0; i <= limit; ++i) {
        proactive->putAppDumpCheckWithFile(held, i, std::nullopt);
    }
    const auto waiting = proactive->stack.contents();
    ASSERT_EQ(waiting.size(), limit + 1);
    EXPECT_EQ(waiting[1]->checkStatus, 1U) << "the first dump has gone";
    EXPECT_THAT(logged(), testing::SizeIs(1));
    settingsArrive();
    proactive->checkQueueFlushHandler();
    EXPECT_EQ(proactive->stack.fileCount(), 0U);
    proactive->uploadFile(held);
    EXPECT_THAT(logged(), IsEmpty()) << "one is on its way";
    proactive->uploadFile(held);
    EXPECT_THAT(logged(), ElementsAre("Too many files wait. file upload failed"));
    fakes.queue->drain();
}

TEST_F(ProactiveTest, DumpsFollowTheirCheckOneAtATimeWhateverBecomesOfThem) {
    settingsArrive();
    proactive->putAppDumpCheckWithFile(nullptr, 1, std::nullopt);
    proactive->putAppDumpCheckWithFiles({file("M"), file("MM"), file("MMM"), file("MMMM")}, 1, "");
    ASSERT_EQ(mkfifo((folder.path / "pipe").c_str(), 0600), 0);
    proactive->putAppDumpCheckWithFile(FileHandle::forReadingAtPath(folder.path / "pipe"), 1, "");
    proactive->checkQueueFlushHandler();
    fakes.queue->drain();
    // The one in last place came first: it cannot be read.
    EXPECT_THAT(sent(), ElementsAre("APP DUMP;APP DUMP;APP DUMP;", "TQ=="));
    EXPECT_THAT(fakes.http->request(1).url, EndsWith("/sdk/v1/technology/putDump"));

    fakes.http->answer(1, 200, {{"uploaded", true}, {"message", "M\nM"}, {"payload", {{"id", 7}}}});
    fakes.queue->drain();
    fakes.http->answer(2, 200, {{"uploaded", true}, {"payload", std::string(255, '.') + "\u00e4"}});
    fakes.queue->drain();
    fakes.http->answerRaw(3, {200, {}, toBytes("no JSON"), ""});
    fakes.queue->drain();
    EXPECT_THAT(sent(), ElementsAre(testing::_, "TQ==", "TU0=", "TU1N", "TU1NTQ=="));
    fakes.http->answerRaw(4, {0, {}, {}, "No route"});
    proactive->uploadFile(file("last"));
    fakes.queue->drain();
    fakes.http->answer(5, 200, {{"uploaded", false}, {"message", nullptr}});
    EXPECT_THAT(logged(),
                ElementsAre("The file is not a plain file. file upload failed",
                            R"(M?M file upload succeeded {"id":7})",
                            "(null) file upload succeeded " + std::string(255, '.') + "...",
                            "No answer could be read. file upload failed",
                            "No route file upload failed", "<null> file upload failed"));
}

TEST_F(ProactiveTest, WithoutAFileThereIsNothingToUploadOrCompress) {
    EXPECT_THAT([&] { proactive->uploadFile(nullptr); },
                ThrowsMessage<std::logic_error>("file empty/undefined, unable to upload"));
    EXPECT_THAT(logged(), ElementsAre("unexpected error uploading file"));
    EXPECT_THAT([] { SupportSDKProactive::compressFiles({}); },
                ThrowsMessage<std::logic_error>(
                    "support bundle folder doesn't exist, unable to upload support assets"));
    EXPECT_EQ(SupportSDKProactive::compressFiles({file("")}), std::nullopt);
    Json problem;
    proactive->sdk->upload(nullptr, nullptr, [&](const Json& response) { problem = response; });
    fakes.queue->drain();
    EXPECT_EQ(problem, Json({{"status", 0}, {"message", "There is no file."}}));
}

TEST_F(ProactiveTest, AConfigurationThatComesLaterTakesOver) {
    for (const auto* nothing : {"missing", "list"}) {
        proactive = SupportSDKProactive::create(nothing, Json{{"a", "b"}}, fakes.platform);
        EXPECT_EQ(proactive->sdk, nullptr);
        queue({"early"});
        proactive->checkQueueFlushHandler();
        proactive->uploadFile(file("M"));
        EXPECT_EQ(logged().back(), "There is no configuration. file upload failed");
        proactive->getCustomerWithInformation(Json{{"a", "b"}});
        EXPECT_FALSE(proactive->loadConfigurationFile(nothing));
    }
    fakes.http->sent.clear();
    EXPECT_TRUE(proactive->loadConfigurationFile("support"));
    const auto former = proactive->sdk;
    EXPECT_TRUE(proactive->loadConfigurationFile("support"));
    EXPECT_TRUE(former->isRetired());
    fakes.http->answer(0, 200, {{"supportProactiveEnabled", true}});
    fakes.queue->drain();
    EXPECT_THAT(sent(), ElementsAre("", "")) << "former settings are no news";
    fakes.http->answer(1, 200, {{"supportProactiveEnabled", true}});
    EXPECT_THAT(fakes.http->sent.back().request.url, EndsWith("/customers/resolve"));
    proactive->checkQueueFlushHandler();
    EXPECT_EQ(sent().back(), "early;");
    EXPECT_FALSE(SupportSDKProactive::jsonFromData("7") || SupportSDKProactive::jsonFromData("{"));
    EXPECT_EQ(SupportSDKProactive::jsonFromData("[]"), Json::array());
}

TEST_F(ProactiveTest, FilesForOneServiceDoNotGoToTheNext) {
    settingsArrive();
    for (const auto* content : {"M", "MM", "MMM"}) proactive->uploadFile(file(content));
    EXPECT_TRUE(proactive->loadConfigurationFile("support"));
    proactive->uploadFile(file("MMMM"));
    fakes.queue->drain();
    EXPECT_THAT(sent(), ElementsAre("", "TU1NTQ=="));
    const std::string former = "Its service is not the present one any more. file upload failed";
    EXPECT_THAT(logged(),
                ElementsAre("No answer could be read. file upload failed", former, former));
}

TEST_F(ProactiveTest, NobodyIsToldOnceItIsGone) {
    settingsArrive();
    proactive->uploadFile(file("M"));
    proactive->uploadFile(file("MM"));
    fakes.queue->drain();
    proactive->uploadFile(file("MMM"));
    proactive.reset();
    fakes.http->answer(0, 200, {{"uploaded", true}});
    fakes.queue->drain();
    EXPECT_THAT(sent(), ElementsAre("TQ=="));
    EXPECT_THAT(logged(), IsEmpty());
}

}  // namespace
}  // namespace supportsdk::test
