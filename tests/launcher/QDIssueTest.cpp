#include "supportsdk/core/QDIssue.h"

#include <gtest/gtest.h>

#include "tests/support/FakePlatform.h"

namespace supportsdk::test {
namespace {

TEST(QDIssue, ReadsTheUserUnderItsOddKeyAndStoresItUnderTheRightOne) {
    EXPECT_EQ(QDIssue(Json{{"members_users_id", "7"}}).members_users_id, std::nullopt);
    const QDIssue issue(Json{{"arrivamembers_users_idl_time", "7"}});
    EXPECT_EQ(issue.members_users_id, "7");
    EXPECT_EQ(issue.dict(), Json({{"isRated", false}, {"members_users_id", "7"}}));
    EXPECT_EQ(QDIssue(issue.dict()).members_users_id, std::nullopt);
}

TEST(QDIssue, StoresWhatItHasAndNotWhatIsFetchedAnew) {
    EXPECT_EQ(QDIssue().dict(), Json({{"isRated", false}}));

    const Json record = {{"id", "12"},          {"status", 3},
                         {"rating", 5},         {"isRated", 1},
                         {"xmpp_data", "QUJD"}, {"owner_user_avatar", "a.png"},
                         {"comm_id", Json()},   {"transcripts", {{"c", Json::object()}}}};
    const QDIssue issue(record);
    EXPECT_EQ(issue.owner_user_avatar, "a.png");
    EXPECT_EQ(issue.transcripts, Json({{"c", Json::object()}}));
    EXPECT_EQ(issue.dict(), Json({{"id", "12"},
                                  {"status", 3},
                                  {"rating", 5},
                                  {"isRated", true},
                                  {"xmpp_data", "QUJD"}}));
    EXPECT_EQ(QDIssue(issue.dict()).transcripts, Json::object());
}

TEST(QDIssue, TellsItsStateByTheOrderOfTheStatus) {
    struct Case {
        Json status;
        const char* display;
    };
    const FakeLocalizer localizer;
    for (const auto& [status, display] :
         {Case{Json(), "Open"}, Case{"8", "Open"}, Case{-1, "Open"}, Case{6, "Open"},
          Case{7, "Resolved"}, Case{8, "Closed"}, Case{1e300, "Closed"}}) {
        const QDIssue issue(Json{{"status", status}});
        EXPECT_EQ(issue.displayStatus(localizer), display) << status;
        EXPECT_EQ(issue.isOpen() + issue.isResolved() + issue.isClosed(), 1) << status;
    }
}

TEST(QDIssue, KeepsFiveFieldsWhenCleared) {
    QDIssue issue(Json{{"id", "1"},
                       {"status", 7},
                       {"isRated", true},
                       {"resolved", "then"},
                       {"rating", 4},
                       {"owner_user_avatar", "a"},
                       {"transcripts", {{"c", 1}}}});
    issue.isTemporary = true;
    issue.clear();
    EXPECT_EQ(issue.dict(), Json({{"isRated", false}, {"resolved", "then"}, {"rating", 4}}));
    EXPECT_EQ(issue.owner_user_avatar, "a");
    EXPECT_EQ(issue.transcripts, Json({{"c", 1}}));
    EXPECT_TRUE(issue.isTemporary);
}

}  // namespace
}  // namespace supportsdk::test
