#include "service/state/Store.h"

#include <sqlite3.h>

#include <cstdio>
#include <initializer_list>
#include <string_view>

#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

/// One prepared statement with its parameters bound, valid for one walk over its rows. The
/// parameters are not copied: one may be a dump.
class Store::Statement {
 public:
    Statement(sqlite3* database, const char* sql,
              std::initializer_list<std::string_view> parameters) {
        sqlite3_prepare_v2(database, sql, -1, &statement_, nullptr);
        int index = 0;
        for (const auto parameter : parameters) {
            sqlite3_bind_blob64(statement_, ++index, parameter.data(), parameter.size(),
                                SQLITE_STATIC);
        }
    }
    ~Statement() { sqlite3_finalize(statement_); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    bool nextRow() { return sqlite3_step(statement_) == SQLITE_ROW; }

    void write() {
        if (sqlite3_step(statement_) != SQLITE_DONE)
            std::fprintf(stderr, "store: %s\n", sqlite3_errmsg(sqlite3_db_handle(statement_)));
    }

    [[nodiscard]] std::string column() const {
        const auto* data = static_cast<const char*>(sqlite3_column_blob(statement_, 0));
        const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, 0));
        return data ? std::string(data, size) : std::string();
    }

 private:
    sqlite3_stmt* statement_ = nullptr;
};

std::unique_ptr<Store> Store::open(const std::filesystem::path& file) {
    sqlite3* database = nullptr;
    const int result = sqlite3_open(file.c_str(), &database);
    std::unique_ptr<Store> store(new Store(database));
    // A power cut may cost the last moments of a stand-in, so no waiting for the disk.
    const bool ready = result == SQLITE_OK && store->run("PRAGMA journal_mode = WAL") &&
                       store->run("PRAGMA synchronous = OFF") &&
                       store->run(
                           "CREATE TABLE IF NOT EXISTS records (number INTEGER PRIMARY KEY, "
                           "kind, id, body, UNIQUE (kind, id))") &&
                       store->run("CREATE TABLE IF NOT EXISTS bytes (id PRIMARY KEY, body)");
    return ready ? std::move(store) : nullptr;
}

Store::~Store() {
    sqlite3_close(database_);
}

bool Store::run(const char* sql) {
    return sqlite3_exec(database_, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

void Store::put(const std::string& kind, const std::string& id, const Json& record) {
    const std::lock_guard lock(mutex_);
    Statement(database_,
              "INSERT INTO records (kind, id, body) VALUES (?, ?, ?) "
              "ON CONFLICT (kind, id) DO UPDATE SET body = excluded.body",
              {kind, id, dumpJson(record)})
        .write();
}

std::optional<Json> Store::get(const std::string& kind, const std::string& id) const {
    const std::lock_guard lock(mutex_);
    Statement statement(database_, "SELECT body FROM records WHERE kind = ? AND id = ?",
                        {kind, id});
    if (!statement.nextRow()) return std::nullopt;
    return parseJson(statement.column());
}

std::vector<Json> Store::list(const std::string& kind) const {
    const std::lock_guard lock(mutex_);
    Statement statement(database_, "SELECT body FROM records WHERE kind = ? ORDER BY number",
                        {kind});
    std::vector<Json> records;
    while (statement.nextRow()) {
        if (auto record = parseJson(statement.column())) records.push_back(std::move(*record));
    }
    return records;
}

std::optional<Json> Store::update(const std::string& kind, const std::string& id,
                                  const std::function<void(Json&)>& change) {
    const std::lock_guard lock(mutex_);
    auto record = get(kind, id);
    if (!record) return std::nullopt;
    change(*record);
    put(kind, id, *record);
    return record;
}

int Store::next(const std::string& counter, int first) {
    const std::lock_guard lock(mutex_);
    const auto record = get(kind::counter, counter).value_or(Json::object());
    const auto number = static_cast<int>(integerForKey(record, "next").value_or(first));
    put(kind::counter, counter, {{"next", number + 1}});
    return number;
}

void Store::putBytes(const std::string& id, const std::string& bytes) {
    const std::lock_guard lock(mutex_);
    Statement(database_, "INSERT OR REPLACE INTO bytes (id, body) VALUES (?, ?)", {id, bytes})
        .write();
}

std::optional<std::string> Store::bytes(const std::string& id) const {
    const std::lock_guard lock(mutex_);
    Statement statement(database_, "SELECT body FROM bytes WHERE id = ?", {id});
    if (!statement.nextRow()) return std::nullopt;
    return statement.column();
}

void Store::inOneTransaction(const std::function<void()>& writes) {
    const std::lock_guard lock(mutex_);
    run("BEGIN");
    writes();
    run("COMMIT");
}

}  // namespace supportsdk::service
