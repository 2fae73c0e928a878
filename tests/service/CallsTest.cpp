#include "tests/service/ServiceCalls.h"

namespace supportsdk::test {

namespace {

using testing::SizeIs;

class CallsTest : public testing::Test {
 protected:
    ServiceProcess& service_ = sharedService();
    ServiceCalls calls_{service_.configuration("harbor-lobby", false)};
};

TEST_F(CallsTest, EveryCredentialIsNeededAndChecked) {
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
    EXPECT_EQ(settings.body["advancedConfiguration"]["version"], "2");
}

TEST_F(CallsTest, IntegrationsDoNotSeeEachOther) {
    ServiceCalls other(service_.configuration("meadow-retail", false));
    EXPECT_EQ(other.get("/sdk/v1/app/get").body["supportCallmeEnabled"], true);
    EXPECT_EQ(other.get("/sdk/v1/issues/4001").status, 404);
    EXPECT_EQ(other.get("/sdk/v1/kb/get?id=kb-3").status, 404);
    EXPECT_EQ(calls_.get("/sdk/v1/issues/4001").status, 200);
}

TEST_F(CallsTest, HttpsStandsOnTheAuthority) {
    const auto configuration = service_.configuration("harbor-lobby", true);
    EXPECT_EQ(ServiceCalls(configuration, service_.caFile()).get("/sdk/v1/app/get").status, 200);
    EXPECT_EQ(ServiceCalls(configuration).get("/sdk/v1/app/get").status, 0);
}

TEST_F(CallsTest, MalformedBodiesAreRefusedAndTheServiceStays) {
    std::string deep(100'000, '[');
    const std::vector<std::string> bodies{"",
                                          "[]",
                                          "null",
                                          "{",
                                          "{\"issues\":",
                                          "\xff\xfe",
                                          deep,
                                          R"({"issues":"text"})",
                                          R"({"issues":{"members_id":null,"members_users_id":7}})",
                                          R"({"ids":{}})"};
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
    for (const char* path : {"/sdk/v1/issues/9", "/sdk/v1/forms/get/?id=9", "/sdk/v1/kb/get?id=9",
                             "/sdk/v1/none", "/sdk/v1/customers/getCallbackNumber/9", "/files/9",
                             "/sdk/v1/issues/4001/more", "/sdk/v1/issues/%00%2F..", "/"}) {
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

TEST_F(CallsTest, ReadOnlyContentIsThere) {
    EXPECT_THAT(calls_.get("/sdk/v1/kb/get").body["results"], SizeIs(19));
    EXPECT_THAT(calls_.get("/sdk/v1/kb/search?query=GREEN").body["results"], SizeIs(2));
    EXPECT_THAT(calls_.get("/sdk/v1/kb/search?query=%22Status%22%0D%0Agreen%25").body["results"],
                SizeIs(1));
    for (const char* nothing : {"", "?query=", "?query=%22%20%25", "?query=green%20nothing"})
        EXPECT_THAT(calls_.get(std::string("/sdk/v1/kb/search") + nothing).body["results"],
                    SizeIs(0));
    EXPECT_THAT(calls_.get("/sdk/v1/forms/get/").body["results"], SizeIs(3));
    EXPECT_THAT(calls_.get("/sdk/v1/forms/get/?id=f-visit").body["results"], SizeIs(1));
    const auto journeys =
        calls_.get("/sdk/v1/journeys/data?members_locations_id=l-110").body["results"];
    ASSERT_THAT(journeys, SizeIs(2));
    EXPECT_EQ(calls_.get("/journeys/j-1").status, 200);

    const auto history =
        calls_.get("/sdk/v1/issues/history?members_locations_id=l-110").body["results"];
    const auto& first = history.at(0);
    EXPECT_EQ(first["reference_num"], "SC-4001");
    EXPECT_EQ(first["members_users_name"], "Jo Linden");
    EXPECT_EQ(first["transcripts"]["6001"]["2024-03-04 10:12:41.120"]["from_key"],
              "members_users:u-101");
}

TEST_F(CallsTest, FormLogsChecksAndDumpsAreKept) {
    const Json log{{"checklists_log", {{"answers", {{"reason", "repair"}}}}}};
    EXPECT_EQ(calls_.post("/sdk/v1/forms/logs_put/?form_id=f-visit", log).status, 200);
    const auto form = calls_.get("/sdk/v1/forms/get/?id=f-visit").body["results"][0];
    EXPECT_EQ(form["latest_log_complete"], "1");

    const Json check{{"type", 1}, {"name", "disk"}, {"status_code", 0}};
    EXPECT_EQ(calls_
                  .post("/sdk/v1/technology/putChecks",
                        Json{{"members_id", "m-100"}, {"checks", {check, check}}})
                  .status,
              200);
    EXPECT_THAT(service_.await("checks")->at("checks"), SizeIs(2));

    const auto dump =
        calls_.post("/sdk/v1/technology/putDump", Json{{"file_data", "aGVs\nbG8A\n"}});
    EXPECT_EQ(dump.body["uploaded"], true);
    const auto id = service_.await("dump")->at("id").get<std::string>();
    EXPECT_EQ(calls_.get("/lab/dumps/" + id).content, std::string("hello\0", 6));
    EXPECT_EQ(calls_.post("/sdk/v1/technology/putDump", Json{{"file_data", "a?=="}}).status, 400);
}

}  // namespace

}  // namespace supportsdk::test
