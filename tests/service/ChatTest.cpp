#include "tests/service/ServiceCalls.h"

namespace supportsdk::test {

namespace {

class ChatTest : public testing::Test {
 protected:
    std::string text(const char* key) const { return issue_.at(key).get<std::string>(); }
    Json stored() { return calls_.get("/sdk/v1/issues/" + text("id")).body["results"][0]; }
    Reply chat(const std::string& what, Json body = Json::object()) {
        body["members_users_id"] = "u-101";
        return calls_.post("/sdk/v1/chat/" + what + "/" + text("comm_id"), body);
    }

    ServiceProcess& service_ = sharedService();
    ServiceCalls calls_{service_.configuration("harbor-lobby", false)};
    Json issue_ = calls_.createIssue();
};

TEST_F(ChatTest, AnIssueLivesFromCreatedToRated) {
    EXPECT_EQ(text("reference_num"), "SC-" + text("id"));
    EXPECT_EQ(stored()["status"], 1);
    EXPECT_EQ(chat("enter").status, 200);
    EXPECT_EQ(stored()["status"], 2);
    ASSERT_TRUE(service_.say(text("id"), "Hello"));
    EXPECT_EQ(stored()["status"], 3);

    EXPECT_EQ(calls_.post("/sdk/v1/issues/resolve/" + text("id"), Json{{"resolution", 1}})
                  .body["success"],
              true);
    EXPECT_EQ(stored()["status"], 7);
    const auto cancelled = calls_.post("/sdk/v1/issues/cancel/" + text("id"), Json::object());
    EXPECT_EQ(cancelled.status, 200);
    EXPECT_EQ(cancelled.body["success"], false);
    EXPECT_EQ(stored()["status"], 7);

    const auto rate = "/sdk/v1/issues/rate/" + text("id");
    EXPECT_EQ(calls_.post(rate, Json{{"tech_rating", 6}}).status, 400);
    EXPECT_THAT(calls_.post(rate, Json::object()).body["results"], testing::SizeIs(1));
    EXPECT_EQ(stored()["isRated"], false);
    calls_.post(rate, Json{{"nps_rating", 0}, {"tech_rating", 4}, {"notes", "fine"}});
    EXPECT_EQ(stored()["isRated"], true);
    EXPECT_EQ(stored()["rating"], 4);
    EXPECT_EQ(stored()["rating_notes"], "fine");
    EXPECT_EQ(chat("exit", {{"duration_start", 0}, {"duration_add", 0}}).status, 200);
}

TEST_F(ChatTest, WhatIsSaidInTheRoomBecomesTheTranscript) {
    ASSERT_TRUE(service_.say(text("id"), "Is the <light> green & bright?\nOr not?"));
    ASSERT_TRUE(service_.say(text("id"), "Pick one",
                             {{"kind", "extended"},
                              {"from", "partners_users:8"},
                              {"actions", {{{"key", "a"}, {"lbl", "A"}}}}}));
    ASSERT_TRUE(service_.say(text("id"), "unseen", {{"kind", "data"}}));
    const Json here{{"issue_id", text("id")}};
    const auto first = service_.await("line", here);
    ASSERT_TRUE(first);
    const auto second = service_.await("line", here, first->at("seq"));
    ASSERT_TRUE(second);
    const auto third = service_.await("line", here, second->at("seq"));
    ASSERT_TRUE(third);

    const auto envelope = Json::parse(second->at("body").get<std::string>());
    EXPECT_EQ(envelope["secret"], "d3e78e3d3b68cb0fbd9f66dcaef93cea");
    EXPECT_EQ(envelope["context"]["from"], "partners_users:8");

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
