#include <sqlite3.h>

#include "tests/backends/sqlite/DefaultsFixture.h"

namespace supportsdk::test {
namespace {

class DamagedDefaults : public DefaultsFixture {
 protected:
    /// Fills the standard suite with `count` values of 1,000 bytes, all of them in the main file.
    void fill(int count) {
        const auto store = open();
        for (int i = 0; i < count; ++i) {
            store->standard()->setValue("key" + std::to_string(i), std::string(1000, 'v'));
        }
        sqlTo("PRAGMA wal_checkpoint(TRUNCATE)");
    }

    void sqlTo(const char* sql) const {
        sqlite3* database = nullptr;
        sqlite3_open(standardFile.c_str(), &database);
        EXPECT_EQ(sqlite3_exec(database, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
        sqlite3_close(database);
    }

    void overwrite(std::streamoff from, std::size_t size, char with) const {
        std::fstream file(standardFile, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(from) << std::string(size, with);
    }

    void expectFreshStart(SqliteUserDefaultsStore& store, const std::string& what) {
        EXPECT_FALSE(store.standard()->value("key0")) << what;
        store.standard()->setValue("new", "value");
        EXPECT_EQ(open()->standard()->string("new"), "value") << what;
        EXPECT_EQ(filesWith(".damaged-").size(), 3U) << what << ": with its log and index";
        ASSERT_EQ(log->lines.size(), 1U) << what;
        EXPECT_THAT(log->lines[0], testing::HasSubstr("kept as standard.sqlite.damaged-")) << what;
        EXPECT_EQ(store.standard()->keys(), std::vector<std::string>{"new"}) << what;
    }
};

TEST_F(DamagedDefaults, areSetAsideWhenTheyAreOpened) {
    const std::map<std::string, std::function<void()>> damages = {
        {"no database", [&] { std::ofstream(standardFile) << std::string(9000, 'x'); }},
        {"cut in the middle", [&] { std::filesystem::resize_file(standardFile, 4096 * 5 + 100); }},
        {"a page of zeros", [&] { overwrite(4096, 4096, '\0'); }},
        {"a page of noise", [&] { overwrite(4096, 4096, '\xa5'); }},
        {"another table", [&] { sqlTo("CREATE TABLE other(x)"); }},
        {"a trigger",
         [&] { sqlTo("CREATE TRIGGER t AFTER INSERT ON defaults BEGIN SELECT 1; END"); }},
        {"another program's file", [&] { sqlTo("PRAGMA application_id=7"); }},
    };
    for (const auto& [name, damage] : damages) {
        fill(50);
        damage();
        expectFreshStart(*open(), name);
        std::filesystem::remove_all(data);
        log->lines.clear();
    }
}

TEST_F(DamagedDefaults, areSetAsideWhenTheyShowItLater) {
    for (const bool byWriting : {false, true}) {
        fill(6000);
        const auto store = open();
        EXPECT_TRUE(store->standard()->value("key1"));
        overwrite(4096, std::filesystem::file_size(standardFile) - 4096, '\x5a');
        if (byWriting) {
            for (int i = 0; i < 6000; i += 100) {
                store->standard()->setValue("key" + std::to_string(i), "lost");
            }
            for (const auto& key : store->standard()->keys()) store->standard()->remove(key);
        }
        for (int i = 0; i < 6000; i += 10) {
            static_cast<void>(store->standard()->value("key" + std::to_string(i)));
        }
        expectFreshStart(*store, byWriting ? "writing" : "reading");
        std::filesystem::remove_all(data);
        log->lines.clear();
    }
}

TEST_F(DamagedDefaults, replacedByAnotherProcessAreFollowed) {
    fill(3);
    const auto here = open();
    EXPECT_TRUE(here->standard()->value("key0"));
    // What another process does that finds the file damaged.
    for (const char* part : {"-wal", "-shm", ""}) {
        std::filesystem::rename(standardFile.string() + part,
                                standardFile.string() + ".away" + part);
    }
    const auto there = open();
    there->standard()->setValue("there", 1);
    here->standard()->setValue("here", 2);
    EXPECT_EQ(there->standard()->keys(), (std::vector<std::string>{"here", "there"}));
    EXPECT_EQ(here->standard()->keys(), (std::vector<std::string>{"here", "there"}));
}

}  // namespace
}  // namespace supportsdk::test
