#include "service/state/Store.h"

#include "tests/support/TemporaryFolder.h"

namespace supportsdk::service {

namespace {

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
