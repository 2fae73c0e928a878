#include "service/http/Faults.h"
#include "service/state/Seed.h"
#include "service/state/Store.h"
#include "supportsdk/core/Fields.h"
#include "tests/support/TemporaryFolder.h"

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

int depthOf(const Json& articles, const Json& article) {
    for (const auto& parent : articles) {
        if (parent["id"] == article["parent_id"]) return depthOf(articles, parent) + 1;
    }
    return 0;
}

TEST(SeedTest, TheBuiltInOneHoldsWhatDemosNeed) {
    std::string problem;
    const auto seed = readSeed(defaultSeed(), problem);
    ASSERT_TRUE(seed) << problem;
    const auto& articles = seed->at("articles");
    int deepest = 0;
    for (const auto& article : articles) {
        deepest = std::max(deepest, depthOf(articles, article));
        const bool isRoot = article["type"] == 2;
        EXPECT_EQ(depthOf(articles, article) == 0, isRoot) << article["id"];
    }
    EXPECT_EQ(deepest, 6) << "one level more than a list goes down to";
    for (const auto& form : seed->at("forms")) {
        bool hasCondition = false;
        for (const auto& field : form.at("field_defs")) {
            const auto parent = stringForKey(field, "parentKey");
            EXPECT_TRUE(!parent || form.at("field_defs").contains(*parent)) << field;
            hasCondition = hasCondition || parent;
        }
        EXPECT_TRUE(hasCondition) << form["name"];
    }
}

TEST(SeedTest, ABadOneIsNamed) {
    std::string problem;
    EXPECT_FALSE(readSeed("{", problem));
    EXPECT_FALSE(readSeed("{}", problem));
    EXPECT_FALSE(readSeed(R"({"integrations":[{"apiKey":"k"}]})", problem));
    EXPECT_NE(problem.find("integrationId"), std::string::npos);
}

TEST(StoreTest, KeepsOrderUpdatesAndBytesOverAReopening) {
    const test::TemporaryFolder folder;
    const auto file = folder.path / "state.sqlite";
    {
        const auto store = Store::open(file);
        ASSERT_TRUE(store);
        store->put("k", "b", {{"n", 1}});
        store->put("k", "a", {{"n", 2}});
        store->put("k", "b'; DROP TABLE records", {{"n", 3}});
        store->update("k", "b", [](Json& record) { record["n"] = 4; });
        EXPECT_FALSE(store->update("k", "none", [](Json&) {}));
        store->putBytes("x", std::string("\0\xff", 2));
        EXPECT_EQ(store->next("c", 5), 5);
    }
    const auto store = Store::open(file);
    ASSERT_TRUE(store);
    EXPECT_EQ(Json(store->list("k")), Json::parse(R"([{"n":4},{"n":2},{"n":3}])"));
    EXPECT_EQ(store->bytes("x"), std::string("\0\xff", 2));
    EXPECT_EQ(store->next("c", 5), 6);
    EXPECT_FALSE(Store::open(folder.write("other", std::string(4096, 'x'))));
}

}  // namespace
}  // namespace supportsdk::service
