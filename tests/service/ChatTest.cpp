#include <openssl/evp.h>

#include "tests/service/ServiceCalls.h"

namespace supportsdk::test {

namespace {

/// Opens a credential block the way a host does, without the service's own code.
std::string decrypt(const std::string& block, std::string key) {
    key.resize(32, '\0');
    std::string cipher(block.size() / 4 * 3, '\0');
    EVP_DecodeBlock(reinterpret_cast<unsigned char*>(cipher.data()),
                    reinterpret_cast<const unsigned char*>(block.data()),
                    static_cast<int>(block.size()));
    cipher.resize(cipher.size() - (block.size() - 1 - block.find_last_not_of('=')));
    EXPECT_EQ(cipher.size() % 16, 0U);
    std::string plain(cipher.size() + 16, '\0');
    int size = 0;
    EVP_CIPHER_CTX* context = EVP_CIPHER_CTX_new();
    EVP_DecryptInit_ex(context, EVP_aes_256_ecb(), nullptr,
                       reinterpret_cast<const unsigned char*>(key.data()), nullptr);
    EVP_CIPHER_CTX_set_padding(context, 0);
    EVP_DecryptUpdate(context, reinterpret_cast<unsigned char*>(plain.data()), &size,
                      reinterpret_cast<const unsigned char*>(cipher.data()),
                      static_cast<int>(cipher.size()));
    EVP_CIPHER_CTX_free(context);
    plain.resize(static_cast<std::size_t>(size));
    return plain;
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
    Json configuration_ = service_.configuration("harbor-lobby", false);
    ServiceCalls calls_{configuration_};
    Json issue_ = calls_.createIssue();
};

TEST_F(ChatTest, TheCredentialBlockOpensWithTheKeyOfTheIntegration) {
    auto plain = decrypt(text("xmpp_data"), configuration_["apiKey"]);
    EXPECT_EQ(plain.size() % 16, 0U);
    plain.erase(plain.find_last_not_of('\0') + 1);
    const auto credentials = Json::parse(plain, nullptr, false);
    EXPECT_EQ(credentials["comm_id"], text("comm_id"));
    EXPECT_EQ(credentials["port"], service_.ready()["xmpp"]["port"]);
    EXPECT_EQ(credentials["host"], "127.0.0.1");
    EXPECT_THAT(credentials["jid"].get<std::string>(), testing::EndsWith("@support.test"));
    EXPECT_THAT(credentials["resource"].get<std::string>(),
                testing::StartsWith("members_users:u-101;"));
    EXPECT_FALSE(credentials["password"].get<std::string>().empty());
}

TEST_F(ChatTest, SomebodyTakesANicknameUntilKickedOut) {
    const Json issue = {{"issue", text("id")}};
    ASSERT_TRUE(service_.post("/occupy", issue));
    ASSERT_TRUE(service_.say(text("id"), "The ghost hears nothing, and stays."));
    const auto inRoom = [&] {
        return service_.get("/participants?issue=" + text("id"))->at("results").size();
    };
    EXPECT_EQ(inRoom(), 1U);
    ASSERT_TRUE(service_.post("/kick", issue));
    EXPECT_EQ(inRoom(), 0U);
}

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

TEST_F(ChatTest, TheChatRecordNamesTheRoomAndWhoMaySpeak) {
    const auto record = chat("get").body;
    EXPECT_EQ(record["external_id"], "chat-" + text("comm_id") + "@rooms.support.test");
    EXPECT_EQ(record["comm"]["title"], "Support for Jo Linden");
    EXPECT_EQ(record["participants_eligible"]["members_users:u-101"]["name"], "Jo Linden");
    EXPECT_EQ(record["participants_eligible"]["partners_users:7"]["alias"], "@robin");
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

TEST_F(ChatTest, AnUploadIsServedBackAndComesAsAnEnvelope) {
    std::string content(300'000, '\0');
    for (std::size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i * 7);
    const auto reply = calls_.upload("/sdk/v1/chat/filePut/" + text("comm_id"), content);
    ASSERT_EQ(reply.status, 200);
    const auto& envelope = reply.body.at("results").at(0);
    EXPECT_EQ(envelope["secret"], "44290cefe42924d04a92d99428a95f27");
    EXPECT_EQ(envelope["context"]["from"], "members_users:u-101");
    const auto url = envelope["attachment"]["url"].get<std::string>();
    ASSERT_TRUE(url.starts_with(service_.http()));
    const auto file = httplib::Client(service_.http()).Get(url.substr(service_.http().size()));
    ASSERT_TRUE(file);
    EXPECT_EQ(file->body, content);
    EXPECT_EQ(file->get_header_value("Content-Type"), "image/jpeg");
}

}  // namespace

}  // namespace supportsdk::test
