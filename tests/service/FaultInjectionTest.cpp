#include <future>

#include "tests/service/ServiceCalls.h"

namespace supportsdk::test {

namespace {

constexpr char path[] = "/sdk/v1/app/get";

class FaultInjectionTest : public testing::Test {
 protected:
    ~FaultInjectionTest() override { service_.remove("/faults"); }

    void inject(Json fault) {
        fault["path"] = path;
        ASSERT_TRUE(service_.post("/faults", fault));
    }
    Reply call() {
        return ServiceCalls(service_.configuration("harbor-lobby", secure_), service_.caFile())
            .get(path);
    }

    ServiceProcess& service_ = sharedService();
    bool secure_ = false;
};

TEST_F(FaultInjectionTest, EachKindStrikesOnceAndIsGone) {
    for (const bool secure : {false, true}) {
        secure_ = secure;
        inject({{"kind", "status"}, {"status", 503}, {"headers", {{"Retry-After", "7"}}}});
        const auto status = call();
        EXPECT_EQ(status.status, 503);
        EXPECT_EQ(status.headers.find("Retry-After")->second, "7");

        inject({{"kind", "garbage"}});
        EXPECT_TRUE(call().body.is_discarded());
        inject({{"kind", "list"}});
        EXPECT_TRUE(call().body.is_array());
        inject({{"kind", "contentType"}});
        EXPECT_EQ(call().headers.find("Content-Type")->second, "text/html");
        inject({{"kind", "cut"}});
        EXPECT_EQ(call().status, 0);
        inject({{"kind", "drop"}});
        EXPECT_EQ(call().status, 0);
        EXPECT_EQ(call().status, 200);
    }
}

TEST_F(FaultInjectionTest, LastingOnesStayUntilTheyAreCleared) {
    inject({{"kind", "status"}, {"times", 0}});
    EXPECT_EQ(call().status, 500);
    EXPECT_EQ(call().status, 500);
    EXPECT_EQ(service_.get("/faults")->at("results").size(), 1U);
    EXPECT_TRUE(service_.remove("/faults"));
    EXPECT_EQ(call().status, 200);
}

TEST_F(FaultInjectionTest, ASilentServiceSpeaksToNobodyUntilCleared) {
    const auto before = service_.get("/events")->at("next").get<std::uint64_t>();
    inject({{"kind", "silence"}});
    auto waiting = std::async(std::launch::async, [this] { return call().status; });
    ASSERT_TRUE(service_.await("request", {{"path", path}}, before));
    EXPECT_FALSE(
        service_.await("answered", {{"path", path}}, before, std::chrono::milliseconds{100}));
    service_.remove("/faults");
    EXPECT_EQ(waiting.get(), 0);
}

TEST_F(FaultInjectionTest, NonsenseIsNoFault) {
    for (const Json& fault :
         {Json{{"kind", "no such"}, {"path", "/"}}, Json{{"kind", "cut"}},
          Json{{"kind", "answer"}, {"path", "/"}, {"headers", {{"A", "b\r\nC: d"}}}},
          Json{{"kind", "delay"}, {"path", "/"}, {"milliseconds", -1}}}) {
        EXPECT_FALSE(service_.post("/faults", fault)) << fault;
    }
}

}  // namespace

}  // namespace supportsdk::test
