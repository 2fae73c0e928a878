#include "tests/service/ServiceCalls.h"

namespace supportsdk::test {

namespace {

using testing::SizeIs;

class CallsTest : public testing::Test {
 protected:
    ServiceProcess& service_ = sharedService();
    ServiceCalls calls_{service_.configuration("harbor-lobby", false)};
};

TEST_F(CallsTest, EveryCredentialIsNeededAndOpensItsOwnIntegrationOnly) {
    const auto right = calls_.headers;
    for (const char* header : {"X-Quorrand-Integration", "X-Quorrand-Key", "X-Quorrand-Token"}) {
        calls_.headers = right;
        calls_.headers.erase(header);
        const auto missing = calls_.get("/sdk/v1/app/get");
        EXPECT_EQ(missing.status, 401) << header;
        EXPECT_TRUE(missing.body.contains("message")) << header;
        EXPECT_EQ(missing.headers.count("X-Quorrand-DownloadSessionToken"), 0U);

        calls_.headers.emplace(header, "wrong");
        EXPECT_EQ(calls_.get("/sdk/v1/nothing/here").status, 401) << header;
    }
    calls_.headers = right;
    const auto settings = calls_.get("/sdk/v1/app/get");
    EXPECT_EQ(settings.status, 200);
    EXPECT_EQ(settings.headers.count("X-Quorrand-DownloadSessionToken"), 1U);

    ServiceCalls other(service_.configuration("meadow-retail", false));
    EXPECT_EQ(other.get("/sdk/v1/issues/4001").status, 404);
    EXPECT_EQ(other.get("/sdk/v1/kb/get?id=kb-3").status, 404);
    EXPECT_EQ(calls_.get("/sdk/v1/issues/4001").status, 200);
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
    EXPECT_EQ(calls_.get("/sdk/v1/app/get").status, 200);
}

TEST_F(CallsTest, WhatIsUnknownIsNotFound) {
    for (const char* path :
         {"/sdk/v1/issues/9", "/sdk/v1/forms/get/?id=9", "/sdk/v1/kb/get?id=9", "/sdk/v1/none",
          "/sdk/v1/customers/getCallbackNumber/9", "/files/9", "/sdk/v1/issues/%00%2F..", "/"}) {
        EXPECT_EQ(calls_.get(path).status, 404) << path;
    }
    const Json user{{"members_users_id", "u-101"}};
    EXPECT_EQ(calls_.post("/sdk/v1/chat/get/9", user).status, 404);
    EXPECT_EQ(calls_.post("/sdk/v1/issues/resolve/9", Json::object()).status, 404);
    EXPECT_EQ(calls_
                  .post("/sdk/v1/customers/resolve",
                        Json{{"ids", {{"members_users_email", "nobody@example.com"}}}})
                  .status,
              404);
    EXPECT_EQ(calls_.get("/sdk/v1/issues/create").status, 404);
    EXPECT_EQ(calls_.get("/sdk/v1/issues/resolve/4001").status, 405);
}

TEST_F(CallsTest, CustomersAreFoundByAnyOfTheirNames) {
    for (const auto& [key, value] :
         std::map<std::string, std::string>{{"members_users_email", "jo@harbor-hotel.example"},
                                            {"members_users_external_id", "jo-linden"},
                                            {"members_locations_id", "l-110"},
                                            {"members_external_id", "harbor-hotel"}}) {
        const auto found =
            calls_.post("/sdk/v1/customers/resolve", Json{{"ids", {{key, value}}}}).body;
        EXPECT_EQ(found["members_id"], "m-100") << key;
        EXPECT_EQ(found["members_users_id"], "u-101") << key;
        EXPECT_EQ(found["members_locations_id"], "l-110") << key;
        EXPECT_EQ(found["members_devices_id"], "d-120") << key;
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

}  // namespace

}  // namespace supportsdk::test
