#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace supportsdk {

enum class DatabaseFault {
    none,
    /// What the file holds is not, or no longer, a database of this kind.
    damaged,
    /// The file cannot be used now: permissions, a full disk, a lock that nobody releases.
    unavailable,
};

/// One SQLite file of keys and texts. One thread at a time; other processes may use the file too.
class DefaultsDatabase {
 public:
    DefaultsDatabase() = default;

    /// Opens `file`, makes it where it is missing, and checks it from end to end.
    [[nodiscard]] DatabaseFault open(const std::filesystem::path& file);

    [[nodiscard]] DatabaseFault read(const std::string& key, std::optional<std::string>& text);
    [[nodiscard]] DatabaseFault write(const std::string& key, const std::string& text);
    [[nodiscard]] DatabaseFault remove(const std::string& key);
    [[nodiscard]] DatabaseFault keys(std::vector<std::string>& keys);

    /// Waits until all that was committed, by whomever, is on the disk.
    [[nodiscard]] DatabaseFault sync();

    /// Whether the file that is open no longer has its name.
    [[nodiscard]] bool isReplaced() const;

    /// Why the latest operation failed.
    [[nodiscard]] const std::string& cause() const { return cause_; }

 private:
    struct Close {
        void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Close>;

    [[nodiscard]] DatabaseFault faultOf(int code);
    [[nodiscard]] DatabaseFault execute(const char* sql);
    [[nodiscard]] DatabaseFault query(const char* sql, std::string& firstValue);
    [[nodiscard]] DatabaseFault prepare(Statement& statement, const char* sql);
    [[nodiscard]] DatabaseFault run(Statement& statement, const char* sql,
                                    std::initializer_list<const std::string*> values);
    [[nodiscard]] DatabaseFault checkContent();
    [[nodiscard]] DatabaseFault create();
    DatabaseFault syncFile();

    std::unique_ptr<sqlite3, Close> database_;
    Statement read_;
    Statement write_;
    Statement remove_;
    std::string cause_;
};

}  // namespace supportsdk
