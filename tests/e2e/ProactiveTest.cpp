#include <gmock/gmock.h>
#include <openssl/sha.h>

#include <array>
#include <map>
#include <random>

#include "tests/e2e/FaultRoad.h"

// An application's own diagnostics: from support-host to what the service has received.

namespace supportsdk::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr char kChecks[] = "/technology/putChecks";
constexpr char kDumps[] = "/technology/putDump";

std::string randomText(std::size_t size) {
    std::minstd_rand random(static_cast<unsigned>(size));
    std::string text(size, '\0');
    for (auto& byte : text) byte = static_cast<char>(random() >> 8U);
    return text;
}

std::string sha256Of(const std::string& bytes) {
    std::array<unsigned char, SHA256_DIGEST_LENGTH> digest{};
    SHA256(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), digest.data());
    std::string text;
    for (const int byte : digest)
        text += {"0123456789abcdef"[byte / 16], "0123456789abcdef"[byte % 16]};
    return text;
}

std::vector<std::string> namesOf(const Json& checks) {
    std::vector<std::string> names;
    for (const auto& check : checks) names.push_back(check.value("name", ""));
    return names;
}

/// Every file below a folder with what it holds.
std::map<std::string, std::string> contentOf(const fs::path& folder) {
    std::map<std::string, std::string> content;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file()) continue;
        std::ifstream in(entry.path(), std::ios::binary);
        content[fs::relative(entry.path(), folder)] = {std::istreambuf_iterator<char>(in), {}};
    }
    return content;
}

class Diagnostics : public FaultRoad {
 protected:
    static constexpr std::chrono::seconds soon{2};

    void SetUp() override {
        ASSERT_TRUE(service);
        folder.write("bundle/Info.json", R"({"CFBundleIdentifier":"test.host"})");
        for (const char* integration : {"harbor-lobby", "meadow-retail"}) {
            folder.write(fs::path("bundle") / (std::string(integration) + ".json"),
                         service->configuration(integration).dump());
        }
        host = startHost({"--ca", service->caFile(), "--bundle", folder.path / "bundle"});
        after_ = service->get("/events?kind=none").value_or(Json())["next"];
    }

    void loadFile(const std::string& name) {
        host->send(
            {{"do", "proactive"}, {"name", name}, {"customer", service->ready()["customer"]}});
        EXPECT_EQ(host->await("proactive")["result"], true);
    }

    /// Until checks are sent in the customer's name.
    void loadAll() {
        loadFile("harbor-lobby");
        while (queued().value("customer", Json::object()).empty() && !HasFailure())
            host->send({{"do", "wait"}, {"milliseconds", 20}});
    }

    void awaitSettings() { host->await("delegate", {{"operation", "supportDidRetrieveSettings"}}); }

    void check(const std::string& name, const Json& more = Json::object()) {
        Json command{{"do", "check"}, {"kind", "health"}, {"name", name}, {"status", 7}};
        command.update(more);
        host->send(command);
    }

    Json queued() {
        host->send({{"do", "queue"}});
        return host->await("queue");
    }

    /// How many are left.
    std::size_t flush() {
        host->send({{"do", "flush"}});
        return host->await("flushed").value("after", std::size_t{0});
    }

    /// What the service received next.
    Json received(const std::string& kind, const Json& where = Json::object()) {
        const auto event = service->await(kind, where, after_);
        EXPECT_TRUE(event) << "no " << kind;
        if (event) after_ = event->value("seq", after_);
        return event.value_or(Json::object());
    }

    std::uint64_t after_ = 0;
};

TEST_F(Diagnostics, ChecksAndDumpsArriveInTheCustomersNameAndTheLatestFirst) {
    loadAll();
    const auto odd = randomText(1'000'003);
    check("disk", {{"detail", "71 % free"}});
    check("lamp", {{"kind", "hardware"}, {"status", UINT64_MAX - 1}});
    check("sync", {{"kind", "cloud"}});
    check("", {{"kind", "dump"}, {"files", {folder.write("odd", odd), folder.write("empty", "")}}});
    check("nobody knows", {{"kind", "unknown"}});
    const auto waiting = queued();
    EXPECT_THAT(namesOf(waiting["checks"]), ElementsAre("disk", "lamp", "sync", "APP DUMP"));
    EXPECT_EQ(waiting["checks"][3]["files"], 2);
    EXPECT_EQ(flush(), 0U);

    const auto batch = received("checks");
    const Json customer{{"members_id", "m-100"},
                        {"members_users_id", "u-101"},
                        {"members_locations_id", "l-110"},
                        {"members_devices_id", "d-120"}};
    EXPECT_EQ(waiting["customer"], customer);
    for (const auto& [key, value] : customer.items()) EXPECT_EQ(batch.value(key, ""), value);
    EXPECT_EQ(batch["checks"], Json::parse(R"([
        {"type": 4, "name": "APP DUMP", "status_code": 7},
        {"type": 3, "name": "sync", "status_code": 7},
        {"type": 2, "name": "lamp", "status_code": 18446744073709551614},
        {"type": 1, "name": "disk", "status_code": 7, "status_detail": "71 % free"}])"));
    for (const auto& bytes : {odd, std::string()}) {
        const auto dump = received("dump");
        EXPECT_EQ(dump["size"], bytes.size());
        EXPECT_EQ(dump["sha256"], sha256Of(bytes));
        EXPECT_EQ(dump["members_users_id"], "u-101");
    }

    check("now", {{"background", false}});
    EXPECT_THAT(namesOf(received("checks")["checks"]), ElementsAre("now"));
}

TEST_F(Diagnostics, ChecksWaitForSettings) {
    host->send({{"do", "proactive"}, {"name", "none"}});
    EXPECT_EQ(host->await("proactive")["sdk"], false);
    for (const char* name : {"A", "B", "C"}) check(name);
    EXPECT_EQ(flush(), 3U) << "nobody can send them";
    strike("delay", "/app/get", {{"milliseconds", 700}});
    loadFile("harbor-lobby");
    EXPECT_EQ(flush(), 3U) << "nobody knows yet whether they may be sent";
    check("at once", {{"background", false}});
    EXPECT_THAT(namesOf(queued()["checks"]), ElementsAre("A", "B", "C", "at once"));
    awaitSettings();
    EXPECT_EQ(flush(), 0U);
    EXPECT_THAT(namesOf(received("checks")["checks"]), ElementsAre("at once", "C", "B", "A"));
}

TEST_F(Diagnostics, AServiceThatDoesNotWantChecksGetsNone) {
    loadFile("meadow-retail");
    awaitSettings();
    check("unwanted");
    check("unwanted too", {{"background", false}});
    EXPECT_EQ(flush(), 0U);
    ASSERT_TRUE(service->post("/settings", {{"integration", "meadow-retail"},
                                            {"patch", {{"supportProactiveEnabled", true}}}}));
    loadFile("meadow-retail");
    awaitSettings();
    check("wanted");
    EXPECT_EQ(flush(), 0U);
    EXPECT_THAT(namesOf(received("checks")["checks"]), ElementsAre("wanted"));
}

TEST_F(Diagnostics, WhatTheServiceFailsToTakeIsLostAndTheRestGoesOn) {
    strike("drop", "/app/get", {{"times", 0}});
    loadFile("harbor-lobby");
    EXPECT_THAT(host->await("delegate")["message"], HasSubstr("connection"));
    ASSERT_TRUE(service->remove("/faults"));
    loadAll();
    for (const char* fault : {"status", "drop", "garbage", "list"}) {
        strike(fault, kChecks);
        check("lost");
        EXPECT_EQ(flush(), 0U);
        for (const char* event : {"request", "answered"})
            received(event, {{"path", std::string("/sdk/v1") + kChecks}});
    }
    // The first file fails in a way of which nobody is told: the second must not wait for it.
    for (const char* fault : {"garbage", "status", "drop"}) {
        strike(fault, kDumps);
        check("",
              {{"kind", "dump"}, {"files", {folder.write("a", fault), folder.write("b", "B")}}});
        EXPECT_EQ(flush(), 0U);
        EXPECT_THAT(namesOf(received("checks")["checks"]), ElementsAre("APP DUMP"));
        EXPECT_EQ(received("dump")["sha256"], sha256Of("B")) << fault;
    }
}

TEST_F(Diagnostics, WhatIsNoCheckIsRefused) {
    loadFile("harbor-lobby");
    const auto refusal = [&](const Json& more) {
        check("x", more);
        return host->await("refused").value("why", "");
    };
    EXPECT_EQ(refusal({{"name", nullptr}}), "new check instances must have a name");
    EXPECT_EQ(refusal({{"status", UINT64_MAX}}),
              "new check instances must have a valid status code");
    EXPECT_THAT(refusal({{"status", -1}}), HasSubstr("no whole number"));
    EXPECT_THAT(refusal({{"status", 1.5}}), HasSubstr("no whole number"));
    EXPECT_THAT(refusal({{"kind", "mood"}}), HasSubstr("none of"));
    EXPECT_THAT(refusal({{"kind", "dump"}, {"files", "a"}}), HasSubstr("no list"));
    EXPECT_THAT(refusal({{"kind", "dump"}, {"files", {"/none"}}}), HasSubstr("opened"));
    EXPECT_THAT(queued()["checks"], IsEmpty());
}

TEST_F(Diagnostics, ALargeDumpKeepsNeitherTheApplicationNorItsEnd) {
    const auto large = folder.write("large", "");
    fs::resize_file(large, std::uintmax_t{60} << 20U);
    loadAll();
    strike("silence", kDumps, {{"times", 0}});
    check("", {{"kind", "dump"}, {"files", {large, large}}});
    EXPECT_EQ(flush(), 0U);
    const auto isThere = [&] {
        return service->await("request", {{"path", std::string("/sdk/v1") + kDumps}}, after_,
                              std::chrono::milliseconds{20});
    };
    const auto begin = queued().value("at", 0);
    auto before = begin;
    int longest = 0;
    while (!isThere() && before - begin < 30'000) {
        const auto now = queued().value("at", 0);
        longest = std::max(longest, now - before);
        before = now;
    }
    EXPECT_TRUE(isThere());
    EXPECT_LT(longest, 500) << "the main thread was kept busy for so many milliseconds";

    host = startHost({"--ca", service->caFile(), "--bundle", folder.path / "bundle"});
    loadAll();
    check("", {{"kind", "dump"}, {"files", {large}}});
    host->send({{"do", "flush"}});
    host->send({{"do", "quit"}});
    host->await("flushed");
    EXPECT_EQ(host->waitForEnd(soon), 0);
}

TEST_F(Diagnostics, DumpsArePackedAndUnpacked) {
    folder.write("logs/app.log", randomText(700'001));
    folder.write("logs/empty.log", "");
    folder.write("logs/" + std::string(120, 'd') + "/" + std::string(120, 'f'), "deep");
    folder.write("state.json", "{}");
    const auto archive = folder.path / "dump.tar.gz";
    host->send({{"do", "pack"},
                {"sources", {folder.path / "logs", folder.path / "state.json", "/dev/null"}},
                {"target", archive}});
    const auto packed = host->await("packed");
    EXPECT_EQ(packed["end"], "done") << packed;
    EXPECT_EQ(packed["files"], 4);
    EXPECT_THAT(packed["skipped"], ElementsAre(HasSubstr("null")));
    EXPECT_EQ(host->seen[host->seen.size() - 2].value("total", 0), 700'007)
        << "the last progress comes before the end";

    host->send({{"do", "unpack"}, {"archive", archive}, {"target", folder.path / "out"}});
    EXPECT_EQ(host->await("unpacked")["end"], "done");
    EXPECT_EQ(contentOf(folder.path / "out/logs"), contentOf(folder.path / "logs"));
    EXPECT_TRUE(fs::exists(folder.path / "out/state.json"));

    host->send({{"do", "unpack"},
                {"archive", folder.write("damaged", "\x1f\x8b no archive")},
                {"target", folder.path / "out"}});
    const auto damaged = host->await("unpacked");
    EXPECT_EQ(damaged["end"], "failed");
    EXPECT_NE(damaged.value("message", ""), "");
}

TEST_F(Diagnostics, PackingIsCancelledByOrderAndByTheEnd) {
    const auto huge = folder.write("huge", "");
    fs::resize_file(huge, std::uintmax_t{8} << 30U);
    fs::create_directory(folder.path / "target");
    const Json pack{
        {"do", "pack"}, {"sources", {huge}}, {"target", folder.path / "target/dump.tar.gz"}};
    host->send(pack);
    host->await("packing");
    host->send(pack);
    EXPECT_THAT(host->await("refused").value("why", ""), HasSubstr("being packed"));
    host->send({{"do", "cancel"}});
    EXPECT_EQ(host->await("packed")["end"], "cancelled");
    EXPECT_TRUE(fs::is_empty(folder.path / "target"));

    host->send(pack);
    host->await("packing");
    host->send({{"do", "quit"}});
    EXPECT_EQ(host->waitForEnd(soon), 0);
    EXPECT_TRUE(fs::is_empty(folder.path / "target"));
}

}  // namespace
}  // namespace supportsdk::test
