#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "tests/backends/sqlite/DefaultsFixture.h"

namespace supportsdk::test {
namespace {

using Defaults = DefaultsFixture;

TEST_F(Defaults, keepEveryKindOfValue) {
    const std::string oddKey("k\0\xff'\n", 5);
    const std::map<std::string, Json> values = {
        {"string", "grüße"},
        {"", ""},
        {"true", true},
        {"int", -9007199254740993},
        {"real", 0.1},
        {"null", nullptr},
        {"array", Json::array({1, "a", Json::object()})},
        {"dictionary", {{"a", {{"b", std::string(300000, 'x')}}}}},
        {oddKey, "odd"}};
    {
        const auto store = open();
        for (const auto& [key, value] : values) store->standard()->setValue(key, value);
        store->standard()->setValue("string", "replaced");
        store->standard()->setValue("string", values.at("string"));
        store->standard()->setValue("gone", 1);
        store->standard()->remove("gone");
        store->standard()->remove("never there");
    }
    const auto again = open()->standard();
    std::vector<std::string> keys;
    for (const auto& [key, value] : values) {
        EXPECT_EQ(again->value(key), value) << key;
        keys.push_back(key);
    }
    EXPECT_EQ(again->keys(), keys);
    EXPECT_FALSE(again->value("gone"));
    again->setValue("broken", std::string("a\xff"));
    EXPECT_EQ(again->string("broken"), "a\xef\xbf\xbd") << "what is no text is replaced";
    EXPECT_TRUE(log->lines.empty());
}

TEST_F(Defaults, keepSuitesApartAndInTheFolder) {
    const std::vector<std::string> names = {"group.com.example.X",
                                            "group.com.example.x",
                                            "..",
                                            "../../escape",
                                            "/etc/passwd",
                                            std::string("a\0b", 3),
                                            "standard",
                                            "%2e",
                                            ".",
                                            "a/b",
                                            std::string(5000, 'n'),
                                            std::string(5001, 'n')};
    const auto store = open();
    EXPECT_FALSE(std::filesystem::exists(data.parent_path()))
        << "nothing is made before it is used";
    for (const auto& name : names) store->suite(name)->setValue("name", name);
    store->standard()->setValue("name", "the standard one");
    EXPECT_EQ(store->suite("a/b"), store->suite("a/b"));
    EXPECT_EQ(store->suite(""), store->standard());
    for (const auto& name : names) EXPECT_EQ(open()->suite(name)->string("name"), name);

    EXPECT_EQ(filesWith(".lock").size(), names.size() + 1);
    const std::filesystem::recursive_directory_iterator all(folder.path);
    for (const auto& entry : all) {
        struct stat status {};
        ::stat(entry.path().c_str(), &status);
        EXPECT_EQ(status.st_mode & 0777, entry.is_directory() ? 0700U : 0600U) << entry.path();
        EXPECT_TRUE(entry.is_directory() || entry.path().parent_path() == data) << entry.path();
    }
}

TEST_F(Defaults, liveInMemoryWhereThereIsNoFolder) {
    std::ofstream(folder.path / "host") << "a file in the way";
    const auto store = open();
    for (int i = 0; i < 3; ++i) store->standard()->setValue("a" + std::to_string(i), i);
    store->standard()->remove("a0");
    EXPECT_EQ(store->standard()->value("a2"), 2);
    EXPECT_EQ(store->standard()->keys(), (std::vector<std::string>{"a1", "a2"}));
    EXPECT_FALSE(store->standard()->flush());
    EXPECT_EQ(log->lines.size(), 1U);

    std::filesystem::remove(folder.path / "host");
    EXPECT_TRUE(store->standard()->flush()) << "the cause has gone";
    EXPECT_EQ(open()->standard()->keys(), (std::vector<std::string>{"a1", "a2"}));
}

TEST_F(Defaults, outliveAFullDisk) {
    const auto store = open();
    store->standard()->setValue("before", "stored");
    store->standard()->setValue("removed", "stored");
    const std::string large(200000, 'x');
    rlimit unlimited{};
    getrlimit(RLIMIT_FSIZE, &unlimited);
    const rlimit full{4096, unlimited.rlim_max};
    const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &full);
    store->standard()->setValue("large", large);
    store->standard()->remove("removed");
    const bool flushed = store->standard()->flush();
    const auto seen = store->standard()->string("large");
    const auto removed = store->standard()->value("removed");
    setrlimit(RLIMIT_FSIZE, &unlimited);
    std::signal(SIGXFSZ, ignored);

    EXPECT_FALSE(flushed);
    EXPECT_EQ(seen, large);
    EXPECT_FALSE(removed);
    EXPECT_EQ(store->standard()->string("before"), "stored");
    ASSERT_FALSE(log->lines.empty());
    EXPECT_THAT(log->lines[0], testing::HasSubstr("could not be stored"));
    EXPECT_TRUE(store->standard()->flush());
    EXPECT_EQ(open()->standard()->string("large"), large);
}

}  // namespace
}  // namespace supportsdk::test
