#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "supportsdk/core/ObjectDescription.h"
#include "supportsdk/core/QDMember.h"

namespace supportsdk::test {
namespace {

const Json record = {{"member",
                      {{"name", "Acme"},
                       {"status", 3},
                       {"members_id", "m"},
                       {"partners", {{"p", 1}}},
                       {"partners_teams_ids", {"t1", 2}},
                       {"avatar", "member.png"},
                       {"nickname", "acme"},
                       {"city", 5}}},
                     {"first_contact", {{"private_label", 1}, {"brand_color1", "#fff"}}},
                     {"user",
                      {{"email", "jo@acme.example"},
                       {"avatar", "user.png"},
                       {"nickname", "jo"},
                       {"location", {{"latitude", 1.5}, {"longitude", "2"}}}}},
                     {"app_config", {{"sk_id", "s"}, {"issue_refresh", 0}}},
                     {"xmpp", {{"jid", "j"}, {"host", "h"}, {"port", 5222}}},
                     {"member_users", {{{"id", "u1"}, {"lang", "de"}, {"password", "p"}}, 7}},
                     {"member_locations", {{{"id", "l1"}, {"state_id", 4}, {"latitude", "1"}}}}};

TEST(QDMemberTest, readsEachValueOfTheRightTypeToItsField) {
    QDMember member;
    member.city = "kept";
    member.populateMemberWithDict(record);

    EXPECT_EQ(member.member_name, "Acme");
    EXPECT_EQ(member.status, 3);
    EXPECT_EQ(member.city, "kept");
    EXPECT_EQ(member.partners, Json({{"t1", Json::object()}, {"2", Json::object()}}));
    EXPECT_TRUE(member.private_label);
    EXPECT_EQ(member.avatar, "member.png");
    EXPECT_EQ(member.user_avatar, "user.png");
    EXPECT_EQ(member.nickname, "acme");
    EXPECT_EQ(member.user_nickname, "jo");
    EXPECT_EQ(member.latitude, 1.5);
    EXPECT_EQ(member.longitude, std::nullopt);
    EXPECT_EQ(member.issue_refresh, 15);
    EXPECT_EQ(member.xmpp_host, "h");
    EXPECT_EQ(member.xmpp_port, std::nullopt);
    ASSERT_EQ(member.member_users.size(), 2U);
    EXPECT_EQ(member.member_users[0].lang, "de");
    EXPECT_EQ(member.member_users[0].password, std::nullopt);
    ASSERT_EQ(member.member_locations.size(), 1U);
    EXPECT_EQ(member.member_locations[0].dict(), Json({{"id", "l1"}, {"state_id", 4}}));
    EXPECT_EQ(member.getMembersDict(), Json({{"name", "Acme"}, {"status", 3}, {"city", "kept"}}));
    EXPECT_EQ(member.getMembersUsersDict(), Json({{"email", "jo@acme.example"}}));
    EXPECT_TRUE(member.isPopulated());
}

TEST(QDMemberTest, aRecordWithoutValuesLeavesEverythingAndClearLeavesAFew) {
    QDMember member;
    member.populateMemberWithDict(record);
    member.populateMemberWithDict(
        {{"member_users", "none"}, {"app_config", {{"issue_refresh", 7}}}});
    EXPECT_EQ(member.member_users.size(), 2U);
    EXPECT_EQ(member.issue_refresh, 7);

    member.clear();
    EXPECT_FALSE(member.isPopulated() || member.private_label || member.status || member.latitude);
    EXPECT_TRUE(member.member_users.empty() && member.member_locations.empty());
    EXPECT_EQ(member.issue_refresh, 15);
    EXPECT_TRUE(member.partners && member.user_nickname && member.user_avatar);
    EXPECT_EQ(member.nickname, std::nullopt);
}

TEST(QDUserTest, clearKeepsThePasswordAndRelationsAreOnlyFilledFromTexts) {
    QDUser user;
    user.id = "u";
    user.password = "p";
    user.sms_number = "1";
    EXPECT_EQ(user.dict(), Json({{"id", "u"}, {"password", "p"}}));
    QDUser::populateQuorrandUser(
        user, {{"entity_name", "Jo"}, {"related_to", ""}, {"status", 1}, {"id", "other"}});
    EXPECT_EQ(user.name(), "Jo");
    EXPECT_FALSE(user.related_to || user.status);
    user.invite = true;
    user.clear();
    EXPECT_FALSE(user.invite || user.name());
    EXPECT_EQ(user.dict(), Json({{"password", "p"}}));
}

TEST(ObjectDescriptionTest, nestedObjectsAreIndentedByTheirDepth) {
    const auto inner = [] {
        return qd_classPropertiesAndValues("Inner", [] { return PropertyList{{"x", "1"}}; });
    };
    const auto outer = [&inner] {
        return qd_classPropertiesAndValues("Outer", [&inner] {
            return PropertyList{{"in", inner()}};
        });
    };
    for (const auto& again : {outer(), outer()}) {
        EXPECT_EQ(again,
                  "<Outer> {\n\tin: [ \t<Inner> {\n\t\tx: [ 1 ]\n\t} </Inner>\n ]\n} </Outer>\n");
    }

    QDMember member;
    member.member_locations.emplace_back();
    EXPECT_THAT(member.debugDescription(),
                testing::HasSubstr("\t<QDLocation> {\n\t\tid: [ (null)"));
    EXPECT_THAT(QDUser().debugDescription(), testing::StartsWith("<QDUser> {\n\tinvite: [ 0 ]"));
}

}  // namespace
}  // namespace supportsdk::test
