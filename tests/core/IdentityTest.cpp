#include "supportsdk/core/CustomerKeys.h"
#include "tests/core/SupportFixture.h"

namespace supportsdk::test {
namespace {

using testing::ElementsAre;

using IdentityTest = SupportTest;

TEST_F(IdentityTest, theDefaultMemberReplacesWhatWasKnownButNothingStored) {
    const auto support = startWithSettings(
        {{"defaultMember", {{"memberId", "m"}, {"memberUserId", "u"}, {"memberLocationId", 5}}}});
    EXPECT_EQ(support->identity.membersId.text(), "m");
    EXPECT_FALSE(support->identity.membersLocationsId.isSet());
    EXPECT_FALSE(support->isMemberSet());

    support->setMemberInfo(std::nullopt);
    EXPECT_TRUE(support->identity.membersId.isSet());
    support->setMemberInfo(Json{{"memberLocationId", "l"}, {"memberDeviceId", "d"}});
    EXPECT_FALSE(support->identity.membersId.isSet());
    EXPECT_EQ(stored().string("memberId"), "m");
    EXPECT_EQ(stored().string("com.goquorrand.forms.userKey"), "u");
    EXPECT_EQ(stored().string("memberDeviceId"), "d");
}

TEST_F(IdentityTest, aResolvedCustomerIsTakenAsItCame) {
    const auto support = startWithSettings(
        {{"supportHistoryEnabled", true}, {"defaultMember", {{"memberDeviceId", "d"}}}});
    std::string told;
    support->getCustomer({{kUserEmail, "jo@acme.example"}},
                         [&](const Json&) {
                             told += support->isMemberSet() ? "set" : "unset";
                             told += " " + std::to_string(fakes.http->sent.size());
                         },
                         {});
    EXPECT_EQ(fakes.http->request(1).url, "https://api.now.example/sdk/v1/customers/resolve");
    EXPECT_EQ(toText(fakes.http->request(1).body),
              R"({"ids":{"members_users_email":"jo@acme.example"}})");
    fakes.http->answer(
        1, 200, {{"members_id", 17}, {"members_users_id", nullptr}, {"members_locations_id", "l"}});

    // The history is asked for before the caller is told.
    EXPECT_EQ(told, "set 3");
    EXPECT_EQ(support->identity.membersId.text(), "17");
    EXPECT_TRUE(support->identity.membersUsersId.isJsonNull());
    EXPECT_FALSE(support->identity.membersDevicesId.isSet());
    EXPECT_EQ(stored().string("memberDeviceId"), "d");
    EXPECT_FALSE(stored().value("memberUserId"));
    EXPECT_FALSE(stored().value("com.goquorrand.forms.userKey"));
    EXPECT_EQ(stored().value("memberId"), Json(17));
}

TEST_F(IdentityTest, onlyAFailedResolveKeepsWhatWasKnown) {
    const auto support = startWithSettings({{"defaultMember", {{"memberId", "m"}}}});
    std::string told;
    const auto resolve = [&](int status, const Json& response) {
        support->getCustomer(
            {{kUserEmail, "jo@acme.example"}}, [&](const Json&) { told += "success "; },
            [&](const Json&) { told += "failure "; });
        fakes.http->answerTo("/resolve", status, response);
    };
    resolve(404, Json::object());
    resolve(201, {{"members_id", "other"}});
    EXPECT_EQ(support->identity.membersId.text(), "m");
    resolve(200, Json::object());
    EXPECT_FALSE(support->identity.membersId.isSet());
    EXPECT_EQ(told, "failure failure success ");
}

TEST_F(IdentityTest, theJsonNullObjectCountsAsSetAndMissingDoesNot) {
    const auto support = startWithSettings();
    const Json null;
    support->identity.membersId = IdentityValue(&null);
    support->identity.membersUsersId = IdentityValue(&null);
    EXPECT_FALSE(support->isMemberSet());
    support->identity.membersLocationsId = IdentityValue(&null);
    EXPECT_TRUE(support->isMemberSet());
}

TEST_F(IdentityTest, theCallbackNumberIsAskedForByUser) {
    const auto support = startWithSettings();
    Json answer;
    support->getCallbackNumber([&answer](const Json& response) { answer = response; }, {});
    EXPECT_TRUE(fakes.http->request(1).url.ends_with("/customers/getCallbackNumber/(null)"));
    fakes.http->answer(1, 200, {{"callback_number", "1"}});
    EXPECT_EQ(answer, Json({{"callback_number", "1"}, {"status", 200}}));

    const Json null;
    support->identity.membersUsersId = IdentityValue(&null);
    support->getCallbackNumber({}, {});
    EXPECT_TRUE(fakes.http->request(2).url.ends_with("/<null>"));
    fakes.http->answer(2, 500, Json::object());
}

}  // namespace
}  // namespace supportsdk::test
