#include "tests/service/ServiceCalls.h"

namespace supportsdk::test {
namespace {

using testing::SizeIs;

class CallsTest : public testing::Test {
 protected:
    ServiceProcess& service_ = sharedService();
    ServiceCalls calls_{service_};
};

TEST_F(CallsTest, EveryCredentialIsNeededAndOpensItsOwnIntegrationOnly) {
    const auto right = calls_.headers;
    for (const char* header : {"X-Quorrand-Integration", "X-Quorrand-Key", "X-Quorrand-Token"}) {
        calls_.headers = right;
        calls_.headers.erase(header);
        EXPECT_EQ(calls_.get("/sdk/v1/app/get").status, 401) << header;
        calls_.headers.emplace(header, "wrong");
        EXPECT_EQ(calls_.get("/sdk/v1/nothing/here").status, 401) << header;
    }
    ServiceCalls other(service_, "meadow-retail");
    EXPECT_EQ(other.get("/sdk/v1/issues/4001").status, 404);
    EXPECT_EQ(other.get("/sdk/v1/kb/get?id=kb-3").status, 404);
}

TEST_F(CallsTest, MalformedBodiesAreRefusedAndTheServiceStays) {
    const std::vector<std::string> bodies{"",
                                          "[]",
                                          "{\"issues\":",
                                          "\xff\xfe",
                                          std::string(100'000, '['),
                                          R"({"issues":"text"})",
                                          R"({"issues":{"members_id":null,"members_users_id":7}})"};
    for (const char* path :
         {"/sdk/v1/customers/resolve", "/sdk/v1/issues/create", "/sdk/v1/issues/rate/4001",
          "/sdk/v1/chat/get/6001", "/sdk/v1/chat/exit/6001",
          "/sdk/v1/forms/logs_put?form_id=f-visit", "/sdk/v1/technology/putChecks",
          "/sdk/v1/technology/putDump", "/sdk/v1/chat/filePut/6001"}) {
        for (const auto& body : bodies) {
            const auto reply = calls_.post(path, body);
            EXPECT_EQ(reply.status, 400) << path << " " << body.substr(0, 40);
            EXPECT_TRUE(reply.body.is_object() && reply.body.contains("message")) << path;
        }
    }
    for (const char* path : {"/sdk/v1/issues/9", "/sdk/v1/kb/get?id=9", "/sdk/v1/none", "/files/9",
                             "/sdk/v1/issues/%00%2F..", "/sdk/v1/issues/create", "/"}) {
        EXPECT_EQ(calls_.get(path).status, 404) << path;
    }
    EXPECT_EQ(calls_.get("/sdk/v1/issues/resolve/4001").status, 405);
}

TEST_F(CallsTest, CustomersAreFoundByAnyOfTheirNames) {
    const auto resolve = [&](const Json& ids) {
        return calls_.post("/sdk/v1/customers/resolve", Json{{"ids", ids}});
    };
    EXPECT_EQ(resolve({{"members_users_email", "nobody@example.com"}}).status, 404);
    for (const Json& ids :
         {Json{{"members_users_external_id", "jo-linden"}}, Json{{"members_locations_id", "l-110"}},
          Json{{"members_external_id", "harbor-hotel"}}}) {
        EXPECT_EQ(resolve(ids).body["members_users_id"], "u-101") << ids;
        EXPECT_EQ(resolve(ids).body["members_devices_id"], "d-120") << ids;
    }
}

TEST_F(CallsTest, ChecksAndDumpsAreKept) {
    const auto put = [&](const char* owner, const Json& checks) {
        return calls_
            .post("/sdk/v1/technology/putChecks", Json{{"members_id", owner}, {"checks", checks}})
            .status;
    };
    const Json disk{{"type", 1}, {"name", "disk"}, {"status_code", UINT64_MAX - 1}};
    const Json lamp{{"type", 2}, {"name", "lamp"}, {"status_code", 0}, {"status_detail", "on"}};
    EXPECT_EQ(put("m-100", Json::array({disk, lamp})), 200);
    EXPECT_EQ(put("m-7", Json::array({disk})), 200);
    EXPECT_EQ(put("m-7", Json::array({disk, Json{{"name", "no type"}}})), 400);
    const auto kept = calls_.get("/lab/checks").body["results"];
    ASSERT_THAT(kept, SizeIs(3));
    for (const auto& [key, value] : lamp.items()) EXPECT_EQ(kept[1][key], value);
    EXPECT_EQ(kept[1]["members_id"], "m-100");
    EXPECT_EQ(kept[1]["integration"], "harbor-lobby");
    EXPECT_EQ(kept[1]["batch"], kept[0]["batch"]);
    EXPECT_NE(kept[1]["batch"], kept[2]["batch"]);
    EXPECT_EQ(kept[2]["status_code"], UINT64_MAX - 1);

    const auto dump =
        calls_.post("/sdk/v1/technology/putDump", Json{{"file_data", "aGVs\nbG8A\n"}});
    EXPECT_EQ(dump.body["uploaded"], true);
    const auto list = calls_.get("/lab/dumps").body["results"];
    ASSERT_THAT(list, SizeIs(1));
    EXPECT_EQ(list[0]["size"], 6);
    EXPECT_EQ(list[0]["sha256"],
              "f3aefe62965a91903610f0e23cc8a69d5b87cea6d28e75489b0d2ca02ed7993c");
    EXPECT_EQ(calls_.get("/lab/dumps/" + list[0].value("id", "")).content,
              std::string("hello\0", 6));
    for (const char* damaged : {"a?==", "abc", "====", "aGVs=", "aGVsbG8A===="})
        EXPECT_EQ(calls_.post("/sdk/v1/technology/putDump", Json{{"file_data", damaged}}).status,
                  400)
            << damaged;
}

class ChatTest : public testing::Test {
 protected:
    std::string text(const char* key) const { return issue_.at(key).get<std::string>(); }
    Json stored() { return calls_.get("/sdk/v1/issues/" + text("id")).body["results"][0]; }
    Reply chat(const std::string& what, Json body = Json::object()) {
        body["members_users_id"] = "u-101";
        return calls_.post("/sdk/v1/chat/" + what + "/" + text("comm_id"), body);
    }

    ServiceProcess& service_ = sharedService();
    ServiceCalls calls_{service_};
    Json issue_ = calls_.createIssue();
};

TEST_F(ChatTest, AnIssueLivesFromCreatedToRated) {
    EXPECT_EQ(stored()["status"], 1);
    EXPECT_EQ(chat("enter").status, 200);
    EXPECT_EQ(stored()["status"], 2);
    ASSERT_TRUE(service_.say(text("id"), "Hello"));
    EXPECT_EQ(stored()["status"], 3);
    calls_.post("/sdk/v1/issues/resolve/" + text("id"), Json{{"resolution", 1}});
    const auto cancelled = calls_.post("/sdk/v1/issues/cancel/" + text("id"), Json::object());
    EXPECT_EQ(cancelled.body["success"], false);
    EXPECT_EQ(stored()["status"], 7);

    const auto rate = "/sdk/v1/issues/rate/" + text("id");
    EXPECT_EQ(calls_.post(rate, Json{{"tech_rating", 6}}).status, 400);
    EXPECT_THAT(calls_.post(rate, Json::object()).body["results"], testing::SizeIs(1));
    EXPECT_EQ(stored()["isRated"], false);
    EXPECT_EQ(chat("exit", {{"duration_start", 0}, {"duration_add", 0}}).status, 200);
}

TEST_F(ChatTest, WhatIsSaidInTheRoomBecomesTheTranscript) {
    ASSERT_TRUE(service_.say(text("id"), "unseen", {{"kind", "data"}}));
    ASSERT_TRUE(service_.say(text("id"), "Is the <light> green & bright?\nOr not?"));
    ASSERT_TRUE(
        service_.say(text("id"), "Pick one", {{"kind", "extended"}, {"from", "partners_users:8"}}));
    ASSERT_TRUE(service_.await("line", {{"issue_id", text("id")}, {"from", "partners_users:8"}}));
    const auto transcript = stored()["transcripts"][text("comm_id")];
    ASSERT_EQ(transcript.size(), 2U);
    const auto& line = transcript.begin().value();
    EXPECT_EQ(line["message"], "Is the <light> green & bright?\nOr not?");
    EXPECT_EQ(line["from"], "Robin Alder");
    EXPECT_EQ(line["from_key"], "partners_users:7");
    EXPECT_EQ(line["sent"], transcript.begin().key());
    EXPECT_EQ(std::next(transcript.begin()).value()["message"], "Pick one");
}

TEST_F(ChatTest, NonsenseFromTheTechnicianIsRefused) {
    EXPECT_FALSE(service_.say(text("id"), "x", {{"kind", "no such kind"}}));
    EXPECT_FALSE(service_.say(text("id"), std::string("control \x01 character")));
    EXPECT_FALSE(service_.say("no such issue", "x"));
    EXPECT_TRUE(service_.say(text("id"), "x", {{"kind", "raw"}, {"body", "{\"half\":"}}));
    EXPECT_FALSE(service_.post("/typing", {{"issue", text("id")}, {"state", "a b<"}}));
}

}  // namespace
}  // namespace supportsdk::test
