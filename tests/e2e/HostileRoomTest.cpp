#include <zlib.h>

#include <algorithm>
#include <fstream>
#include <future>

#include "service/chat/Envelope.h"
#include "tests/e2e/ChatRoad.h"
#include "tests/support/LoopbackHttpServer.h"

// Rooms and lines as nobody wants them: the person can go on, or sees why not.

namespace supportsdk::test {
namespace {

class HostileRoom : public ChatRoad {
 protected:
    void SetUp() override {
        ChatRoad::SetUp();
        load();
        issue_ = openChat();
    }

    void lab(const std::string& what, Json more = Json::object()) {
        more["issue"] = issue_;
        ASSERT_TRUE(service->post(what, more)) << what;
    }

    /// Out of the chat and into it again.
    void openAgain() {
        press("Back");
        host->await("left", {{"class", "ChatViewController"}});
        chooseChat();
        host->await("screen", {{"class", "ChatViewController"}});
    }

    std::string issue_;
};

TEST_F(HostileRoom, ANicknameThatIsTakenIsHadAsSoonAsItIsFree) {
    say("Before.");
    host->send({{"do", "quit"}});
    EXPECT_EQ(host->waitForEnd(), 0);
    lab("/occupy");
    host = startHost();
    load();
    chooseChat();
    host->await("progress", {{"text", "Joining room"}});
    host->send({{"do", "wait"}, {"milliseconds", 300}});
    expectRefusal("Am I in?", kOffline);

    lab("/kick");
    awaitOnline(true);
    host->send({{"do", "send"}});
    awaitLine("Am I in?", true);
    expectLines({"Before.", "Am I in?"});
}

TEST_F(HostileRoom, WhoIsThrownOutSeesItAndCanComeBack) {
    for (const auto* blow : {"/kick", "/destroy"}) {
        SCOPED_TRACE(blow);
        const auto before = std::string("Before ") + blow;
        say(before);
        lab(blow);
        awaitOnline(false);
        expectRefusal("Am I out?", kOffline);
        openAgain();
        awaitOnline(true);
        say(std::string("After ") + blow);
    }
}

TEST_F(HostileRoom, TenThousandLinesOfHistoryKeepNobodyWaiting) {
    constexpr std::size_t count = 10'000;
    say("Before.");
    lab("/replay", {{"lines", count}});
    lab("/cut");
    const auto before = service->get("/events")->at("next").get<std::uint64_t>();
    awaitLine("Line 1", false);
    host->send({{"do", "defaults"}});
    host->await(
        "an answer meanwhile",
        [](const Json& report) { return report.value("is", "") == "defaults"; },
        std::chrono::seconds{3});
    host->send({{"do", "show"}});
    host->await(
        "all lines", [](const Json& report) { return linesOf(report).size() > count; },
        std::chrono::seconds{60});

    Lines wanted = {"Before."};
    for (std::size_t i = 1; i <= count; ++i) wanted.push_back("Line " + std::to_string(i));
    auto seen = linesOf(show());
    std::sort(wanted.begin(), wanted.end());
    std::sort(seen.begin(), seen.end());
    EXPECT_EQ(seen.size(), wanted.size());
    EXPECT_TRUE(seen == wanted);
    say("After.");
    const auto requests =
        service->get("/events?kind=request&after=" + std::to_string(before))->at("results").size();
    EXPECT_LT(requests, 100U) << "the service is not asked for each of the lines";
}

TEST_F(HostileRoom, LongLinesGoAsFarAsTheServerTakesThem) {
    const std::string longText(200'000, 'W');
    service->say(issue_, longText);
    awaitLine(longText, false);
    say(longText);
    expectRefusal(longText + longText, "Your message is too long to be sent.");
    say("Short.");
}

TEST_F(HostileRoom, BodiesOfEveryBrokenKindSpoilNothing) {
    const auto secret = service::secretOf("plain");
    const auto envelope = [&](const std::string& rest) {
        return "{\"secret\":\"" + secret + "\"" + rest + "}";
    };
    const std::string bidi = "\u202Eevil\u202C \u2066x\u2069\u200F";
    const auto halfPair = envelope(R"(,"message":"half a \ud800 pair")");
    const std::string emptyArrays(50'000, '[');
    struct Case {
        std::string body;
        /// What is seen of it; nothing when it is no line.
        std::optional<std::string> text;
    };
    const std::vector<Case> cases = {
        {"{\"secret\":", "{\"secret\":"},
        {"{\"secret\":\"" + secret + "\",}", "{\"secret\":\"" + secret + "\",}"},
        {emptyArrays, emptyArrays},
        {"{\"a\":" + emptyArrays, "{\"a\":" + emptyArrays},
        {"{}", std::nullopt},
        {"[]", std::nullopt},
        {R"({"secret":7})", std::nullopt},
        {R"({"secret":null,"message":"x"})", std::nullopt},
        {envelope(R"(,"message":7,"context":[],"attachment":"x","actions":{},"kb":7)"), ""},
        {envelope(R"(,"message":"types","context":{"from":7,"from_name":[],"from_avatar":{}},)"
                  R"("attachment":{"url":7,"preview":[]},"actions":[7,null,[],{"key":{},"lbl":7,)"
                  R"("uri":[],"perms":{}}],"kb":{"id":7,"title":{},"preview":7,)"
                  R"("preview_length":"x"})"),
         "types"},
        {halfPair, halfPair},
        {envelope(R"(,"message":"zero\u0000byte")"), std::string("zero\0byte", 9)},
        {envelope(",\"message\":\"" + bidi + "\""), bidi},
        {bidi, bidi},
    };
    Lines wanted;
    for (const auto& [body, text] : cases) {
        service->say(issue_, "", {{"kind", "raw"}, {"body", body}});
        if (text) wanted.push_back(*text);
    }
    service->say(issue_, "Still here?");
    wanted.emplace_back("Still here?");
    awaitLine("Still here?", false);
    expectLines(wanted);
    say("Yes.");
}

/// A PNG of zeros, `side` pixels high and wide.
std::string blackPicture(std::uint32_t side) {
    const auto bigEndian = [](std::uint32_t number) {
        return std::string{static_cast<char>(number >> 24U), static_cast<char>(number >> 16U),
                           static_cast<char>(number >> 8U), static_cast<char>(number)};
    };
    const auto chunk = [&](const std::string& name, const std::string& data) {
        const auto body = name + data;
        const auto sum =
            crc32(0, reinterpret_cast<const Bytef*>(body.data()), static_cast<uInt>(body.size()));
        return bigEndian(static_cast<std::uint32_t>(data.size())) + body +
               bigEndian(static_cast<std::uint32_t>(sum));
    };
    const std::vector<Bytef> rows(side * (side * 3UL + 1));
    auto size = compressBound(rows.size());
    std::string packed(size, '\0');
    compress2(reinterpret_cast<Bytef*>(packed.data()), &size, rows.data(), rows.size(), 1);
    packed.resize(size);
    return "\x89PNG\r\n\x1A\n" +
           chunk("IHDR", bigEndian(side) + bigEndian(side) + std::string("\x08\x02\0\0\0", 5)) +
           chunk("IDAT", packed) + chunk("IEND", "");
}

/// The most memory that a process has ever held, in MiB.
long peakMemory(pid_t pid) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) return std::stol(line.substr(6)) / 1024;
    }
    return -1;
}

/// Pictures of lines come from addresses that anybody may have chosen.
class HostilePicture : public HostileRoom {
 protected:
    /// A line whose preview and avatar are at `path`; returns when the picture is asked for.
    void attach(const std::string& path) {
        service->say(
            issue_, "Look: " + path,
            {{"kind", "attachment"},
             {"context", {{"from_avatar", pictures_.url(path)}}},
             {"attachment", {{"url", pictures_.url("/page")}, {"preview", pictures_.url(path)}}}});
        awaitLine("Look: " + path, false);
        EXPECT_EQ(asked_.at(path).get_future().wait_for(JsonLinesProcess::patience),
                  std::future_status::ready)
            << path;
    }

    void serve(const std::string& path, LoopbackHttpServer::Handler handler) {
        auto& asked = asked_[path];
        pictures_.on(path, [&asked, first = std::make_shared<std::once_flag>(),
                            handler = std::move(handler)](const auto& request, auto& peer) {
            std::call_once(*first, [&asked] { asked.set_value(); });
            handler(request, peer);
        });
    }

    std::map<std::string, std::promise<void>> asked_;
    LoopbackHttpServer pictures_;
};

TEST_F(HostilePicture, ABombStaysSmall) {
    const auto bomb = blackPicture(9'000);
    serve("/bomb",
          [&](const auto&, auto& peer) { peer.send(LoopbackHttpServer::response(200, bomb)); });
    const auto before = peakMemory(host->processId());
    attach("/bomb");
    say("Still alive.");
    show();
    EXPECT_LT(peakMemory(host->processId()), before + 100);
}

TEST_F(HostilePicture, OnesThatNeverComeHoldUpNoEnd) {
    for (const auto* path : {"/1", "/2", "/3", "/4", "/5", "/6"})
        serve(path, [](const auto&, auto& peer) { peer.stall(); });
    for (const auto* path : {"/1", "/2", "/3", "/4", "/5", "/6"}) attach(path);
    service->say(issue_, "Wait, there is more.");
    host->send({{"do", "quit"}});
    expectPromptEnd();
}

TEST_F(HostileRoom, FiveThousandParticipantsAreKnownByName) {
    Json participants = Json::object();
    Json keys = Json::array();
    for (int i = 0; i < 5'000; ++i) {
        const auto number = std::to_string(i);
        keys.push_back("partners_users:" + number);
        participants[keys.back()] = {{"name", "Person " + number}, {"alias", "@p" + number}};
    }
    lab("/occupy", {{"participants", keys}});
    auto record = service->get("/records/comm")->at("results").back();
    record["participants_eligible"] = participants;
    record["participants"] = keys;
    strike("answer", "/chat/get/", {{"content", record.dump()}});
    host->send({{"do", "quit"}});
    EXPECT_EQ(host->waitForEnd(), 0);

    host = startHost();
    load();
    EXPECT_EQ(openChat(), issue_);
    service->say(issue_, "Hello from the crowd.", {{"from", "partners_users:4999"}});
    EXPECT_EQ(awaitLine("Hello from the crowd.", false)["name"], "Person 4999");
    say("Hello to all of you.");
}

}  // namespace
}  // namespace supportsdk::test
