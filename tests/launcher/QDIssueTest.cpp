#include "supportsdk/core/QDIssue.h"

#include <gtest/gtest.h>

#include "tests/support/FakePlatform.h"

namespace supportsdk::test {
namespace {

TEST(QDIssue, ReadsTheUserUnderItsOddKeyAndStoresItUnderTheRightOne) {
    EXPECT_EQ(QDIssue(Json{{"members_users_id", "7"}}).members_users_id, std::nullopt);
    const QDIssue issue(Json{{"arrivamembers_users_idl_time", "7"}});
    EXPECT_EQ(issue.dict(), Json({{"isRated", false}, {"members_users_id", "7"}}));
    EXPECT_EQ(QDIssue(issue.dict()).members_users_id, std::nullopt);
}

TEST(QDIssue, StoresWhatItHasAndKeepsFiveFieldsWhenCleared) {
    EXPECT_EQ(QDIssue().dict(), Json({{"isRated", false}}));
    const Json stored = {{"id", "12"},         {"status", 3},     {"rating", 5},
                         {"xmpp_data", "QUJ"}, {"isRated", true}, {"resolved", "then"}};
    Json record = stored;
    record.update({{"owner_user_avatar", "a"}, {"comm_id", Json()}, {"transcripts", {{"c", 1}}}});
    QDIssue issue(record);
    issue.isTemporary = true;
    EXPECT_EQ(issue.dict(), stored);
    EXPECT_EQ(QDIssue(stored).transcripts, Json::object());

    issue.clear();
    EXPECT_EQ(issue.dict(), Json({{"isRated", false}, {"resolved", "then"}, {"rating", 5}}));
    EXPECT_EQ(issue.owner_user_avatar, "a");
    EXPECT_EQ(issue.transcripts, Json({{"c", 1}}));
    EXPECT_TRUE(issue.isTemporary);
    EXPECT_NE(issue.debugDescription().find("rating: [ 5 ]"), std::string::npos);
}

TEST(QDIssue, TellsItsStateByTheOrderOfTheStatus) {
    for (const auto& [status, display] : std::vector<std::pair<Json, std::string>>{
             {Json(), "Open"}, {"8", "Open"}, {6, "Open"}, {7, "Resolved"}, {1e300, "Closed"}}) {
        const QDIssue issue(Json{{"status", status}});
        EXPECT_EQ(issue.displayStatus(FakeLocalizer()), display) << status;
    }
}

}  // namespace
}  // namespace supportsdk::test
