#include "service/http/Faults.h"

#include <thread>

namespace supportsdk::service {

namespace {

TEST(FaultsTest, TheOldestThatFitsStrikesAndCountsDown) {
    Faults faults;
    const auto add = [&](const char* kind, const char* path, int times, const char* method = "") {
        const auto fault =
            Fault::read({{"kind", kind}, {"path", path}, {"times", times}, {"method", method}});
        ASSERT_TRUE(fault);
        faults.add(*fault);
    };
    add("status", "/a/*", 2);
    add("cut", "/a/b", 0);
    add("drop", "/c", 1, "POST");
    EXPECT_FALSE(faults.take("GET", "/c"));
    EXPECT_EQ(faults.take("POST", "/c")->kind, Fault::Kind::drop);
    EXPECT_FALSE(faults.take("POST", "/c"));
    EXPECT_EQ(faults.take("GET", "/a/b")->kind, Fault::Kind::answer);
    EXPECT_EQ(faults.take("GET", "/a/x")->kind, Fault::Kind::answer);
    EXPECT_EQ(faults.take("GET", "/a/b")->kind, Fault::Kind::cut);
    EXPECT_EQ(faults.take("GET", "/a/b")->kind, Fault::Kind::cut);
    EXPECT_FALSE(faults.take("GET", "/a/x"));
}

TEST(FaultsTest, NonsenseIsNoFault) {
    for (const Json& fault :
         {Json{{"kind", "no such"}, {"path", "/"}}, Json{{"kind", "cut"}},
          Json{{"kind", "answer"}, {"path", "/"}, {"headers", {{"A", "b\r\nC: d"}}}},
          Json{{"kind", "delay"}, {"path", "/"}, {"milliseconds", -1}}}) {
        EXPECT_FALSE(Fault::read(fault)) << fault;
    }
}

TEST(FaultsTest, WhoWaitsIsLetGoAtTheEnd) {
    Faults faults;
    std::thread late([&] { faults.wait(std::chrono::hours{1}); });
    std::thread silent([&] { faults.waitForClear(); });
    faults.close();
    late.join();
    silent.join();
}

}  // namespace

}  // namespace supportsdk::service
