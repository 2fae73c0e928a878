#include "supportsdk/core/FormParameters.h"
#include "supportsdk/core/MultipartForm.h"
#include "supportsdk/core/RestResponse.h"
#include "tests/core/SupportFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class RestTest : public SupportTest {
 protected:
    RestCallback collect() {
        return [this](const Json& response) { responses.push_back(response); };
    }
    std::optional<std::string> header(std::size_t index, const char* name) {
        return FakeHttpClient::header(fakes.http->request(index), name);
    }
    std::string body(std::size_t index) { return toText(fakes.http->request(index).body); }

    std::vector<Json> responses;
};

TEST_F(RestTest, requestsCarryTheCredentialsThatThereAre) {
    startWithSettings();
    const auto& request = fakes.http->request(0);
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.confinedHeaderPrefix, "X-Quorrand-");
    EXPECT_TRUE(request.body.empty());
    EXPECT_EQ(header(0, "X-Quorrand-Token"), "token-of-acme");
    EXPECT_EQ(header(0, "X-Quorrand-Integration"), "acme");
    EXPECT_EQ(header(0, "X-Quorrand-Key"), "key-of-acme");
    EXPECT_EQ(header(0, "X-Quorrand-User-Agent"), "SupportSDK 4.2, iOS 6.1 [acme]");
    EXPECT_FALSE(header(0, "X-Quorrand-DownloadSessionToken"));
    EXPECT_THAT(fakes.log->lines, testing::Not(testing::Contains(HasSubstr("key-of-acme"))));

    const auto later = start(other);
    EXPECT_FALSE(header(1, "X-Quorrand-Token"));
    fakes.clock->time += std::chrono::milliseconds{1500};
    fakes.http->answer(1, 503, Json::object());
    EXPECT_EQ(fakes.log->lines.back(),
              "https://other.example/sdk/v1/app/get Failure Elapsed 1.500000 seconds");
}

TEST_F(RestTest, addressesArePlainTextAndQueriesAreEncoded) {
    const auto support = startWithSettings();
    support->executeGet("/issues/a b", "/sdk/v1", Json(), {});
    support->executeGet("https://x.example/y?z=1", std::nullopt,
                        {{"t", "ä&b"}, {"l", {1, true}}, {"n", nullptr}, {"o", {{"k", 1.5}}}}, {});
    EXPECT_EQ(fakes.http->request(1).url, "https://api.now.example/sdk/v1/issues/a b");
    EXPECT_EQ(fakes.http->request(2).url,
              "https://x.example/y?z=1&l%5B%5D=1&l%5B%5D=1&n&o%5Bk%5D=1.5&t=%C3%A4%26b");
}

TEST_F(RestTest, postsAreJsonOrAForm) {
    const auto support = startWithSettings();
    support->executePost("/p", "/sdk/v1", {{"a", "\xff"}}, {});
    support->executePost("/p", "/sdk/v1", Json(), {});
    support->executePost("/f", "/sdk/v1", toBytes("GIF89a"), {{"comm", 5}}, {});

    EXPECT_EQ(fakes.http->request(1).method, "POST");
    EXPECT_EQ(body(1), "{\"a\":\"\xEF\xBF\xBD\"}");
    EXPECT_EQ(header(1, "Content-Type"), "application/json");
    EXPECT_EQ(body(2), "");
    EXPECT_FALSE(header(2, "Content-Type"));
    const auto type = header(3, "Content-Type").value_or("");
    ASSERT_THAT(type, StartsWith("multipart/form-data; boundary="));
    const auto edge = "--" + type.substr(type.find('=') + 1);
    EXPECT_EQ(body(3), edge + "\r\nContent-Disposition: form-data; name=\"comm\"\r\n\r\n5\r\n" +
                           edge +
                           "\r\nContent-Disposition: form-data; name=\"file-data\"; "
                           "filename=\"image\"\r\nContent-Type: image/jpeg\r\n\r\nGIF89a\r\n" +
                           edge + "--\r\n");
}

TEST(MultipartFormTest, theBoundaryIsInNoPartAndNamesCannotBreakOut) {
    int made = 0;
    MultipartForm form([&made] { return "b" + std::to_string(made++); });
    form.addField("a\"\r\nX: y", "b0");
    form.addFile("f", "n", "t/t", toBytes("--b1--"));
    const auto encoded = form.encode();
    EXPECT_EQ(encoded.contentType, "multipart/form-data; boundary=b2");
    EXPECT_THAT(toText(encoded.body), HasSubstr("name=\"a%22%0D%0AX: y\"\r\n"));
}

TEST_F(RestTest, onlyASuccessRenewsOrEndsTheToken) {
    const auto support = startWithSettings();
    const auto get = [&support] { support->executeGet("/x", "/sdk/v1", Json(), {}); };
    get();
    fakes.http->answer(1, 200, Json::object(), {{"x-quorrand-downloadsessiontoken", "t1"}});
    get();
    EXPECT_EQ(header(2, "X-Quorrand-DownloadSessionToken"), "t1");
    fakes.http->answer(2, 500, Json::object(), {{"X-Quorrand-DownloadSessionToken", "t2"}});
    get();
    EXPECT_EQ(header(3, "X-Quorrand-DownloadSessionToken"), "t1");
    fakes.http->answer(3, 200, Json::object());
    get();
    EXPECT_FALSE(header(4, "X-Quorrand-DownloadSessionToken"));
}

TEST_F(RestTest, aCompletionRunsOnceEvenWhenSupportIsGone) {
    auto support = startWithSettings();
    support->executeGet("/x", "/sdk/v1", Json(), collect());
    support->getSettings();
    support->getCustomer({{"a", 1}}, collect(), collect());
    support.reset();
    fakes.log->lines.clear();
    fakes.http->answer(1, 200, {{"a", 1}});
    fakes.http->answer(2, 200, {{"members_id", "m"}});
    EXPECT_EQ(responses.size(), 2U);
    EXPECT_TRUE(fakes.log->lines.empty());
    EXPECT_FALSE(stored().value("memberId"));
}

TEST_F(RestTest, typedCallsTellTheirTwoRulesApart) {
    std::vector<std::string> chosen;
    const RestCallback success = [&chosen](const Json&) { chosen.emplace_back("success"); };
    const RestCallback failure = [&chosen](const Json&) { chosen.emplace_back("failure"); };
    for (const auto& response :
         {Json{{"status", 200}}, Json{{"status", 201}}, Json::object(), Json::array()}) {
        Support::strictly(success, failure)(response);
        Support::leniently(success, failure)(response);
    }
    EXPECT_THAT(chosen,
                ElementsAre("success", "success", "failure", "failure", "failure", "success"));
}

HttpResponse response(int status, std::string_view body, HttpHeaders headers = {}) {
    return {status, std::move(headers), toBytes(body), ""};
}

TEST(RestResponseTest, aSuccessIsTheBodyAndAFailureTheHeadersWithAMessage) {
    EXPECT_EQ(readResponse(response(200, R"({"status": "error", "a": 1})")).dictionary,
              Json({{"status", 200}, {"a", 1}}));
    EXPECT_TRUE(readResponse(response(204, "")).isSuccess);

    const auto failed = readResponse(response(404, R"({"message": "of the body"})",
                                              {{"Server", "x"}, {"message", "of the header"}}));
    EXPECT_FALSE(failed.isSuccess);
    EXPECT_EQ(
        failed.dictionary,
        Json({{"Server", "x"}, {"status", 404}, {"message", "Request failed: not found (404)"}}));
    EXPECT_EQ(readResponse({0, {}, {}, "Connection refused"}).dictionary,
              Json({{"status", 0}, {"message", "Connection refused"}}));
    EXPECT_EQ(readResponse({200, {}, toBytes("{}"), "Cut off"}).dictionary.at("message"),
              "Cut off");
    const auto odd = readResponse({500, {{"X", "\xff"}}, {}, "bad \xfe"}).dictionary;
    EXPECT_EQ(odd.at("X"), "\xEF\xBF\xBD");
    EXPECT_NO_THROW((void)odd.dump());
}

TEST(RestResponseTest, whatIsNoJsonObjectIsAFailureWithAMessage) {
    std::string deep;
    for (int level = 0; level < 200; ++level) deep += "{\"a\":";
    for (const auto& body : {std::string(), std::string("[1]"), std::string("{\"a\":"), deep,
                             std::string("<html>"), std::string("{\"a\":\"\xff\"}")}) {
        const auto failed = readResponse(response(200, body));
        EXPECT_FALSE(failed.isSuccess) << body;
        EXPECT_EQ(failed.dictionary.at("message"), "The response could not be read.");
    }
}

TEST_F(RestTest, datesHashesAndServerMessages) {
    const auto support = start();
    EXPECT_EQ(support->iso8601Date(), "2026-01-31T12:00:30Z");
    fakes.clock->offset = -std::chrono::minutes{210};
    EXPECT_EQ(support->iso8601Date(), "2026-01-31T08:30:30-03:30");
    // RFC 4231, test case 2.
    EXPECT_EQ(Support::hmacSha256("what do ya want for nothing?", "Jefe"),
              "W9zBRr9gdU5qBCQmCJV1x1oAPwidJzmDnexYuWTsOEM=");
    EXPECT_EQ(support->encodeString("x"), Support::hmacSha256("x", "private"));
    EXPECT_EQ(Support::getServerFailureMessageForOperation(response(500, "", {{"Message", "m"}})),
              "m");
    EXPECT_EQ(Support::getServerFailureMessageForOperation(response(500, "")), "");
}

}  // namespace
}  // namespace supportsdk::test
