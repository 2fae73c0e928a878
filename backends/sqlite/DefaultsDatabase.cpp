#include "backends/sqlite/DefaultsDatabase.h"

namespace supportsdk {
namespace {

constexpr int kBusyMilliseconds = 5000;
constexpr const char* kApplication = "1397773139";  // "SPKS": tells our files from others'
constexpr const char* kTable =
    "CREATE TABLE defaults(key TEXT PRIMARY KEY NOT NULL, value TEXT NOT NULL)";

std::string columnText(sqlite3_stmt* statement, int column) {
    const void* text = sqlite3_column_blob(statement, column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
    return text ? std::string(static_cast<const char*>(text), size) : std::string();
}

}  // namespace

DatabaseFault DefaultsDatabase::faultOf(int code) {
    if (code == SQLITE_OK || code == SQLITE_ROW || code == SQLITE_DONE) return DatabaseFault::none;
    cause_ = database_ ? sqlite3_errmsg(database_.get()) : sqlite3_errstr(code);
    switch (code & 0xff) {
        case SQLITE_ERROR:  // our statements are right, so that the tables must be wrong
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
        case SQLITE_FORMAT:
            return DatabaseFault::damaged;
        default:
            return DatabaseFault::unavailable;
    }
}

DatabaseFault DefaultsDatabase::open(const std::filesystem::path& file) {
    sqlite3* opened = nullptr;
    const int code = sqlite3_open_v2(file.c_str(), &opened,
                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    database_.reset(opened);
    if (const auto fault = faultOf(code); fault != DatabaseFault::none) return fault;
    sqlite3_busy_timeout(opened, kBusyMilliseconds);
    // Closing would remove the log by its name, which by then may be that of another file's log.
    sqlite3_db_config(opened, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    sqlite3_db_config(opened, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(opened, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    if (const auto fault = checkContent(); fault != DatabaseFault::none) return fault;
    // What is committed to the log survives the process; sync() is for the loss of power.
    return execute("PRAGMA synchronous=NORMAL");
}

DatabaseFault DefaultsDatabase::checkContent() {
    std::string application;
    std::string tables;
    std::string health;
    auto fault = query("PRAGMA application_id", application);
    if (fault == DatabaseFault::none) {
        fault = query("SELECT group_concat(sql, ';') FROM sqlite_schema", tables);
    }
    if (fault != DatabaseFault::none) return fault;
    if (tables.empty() && application == "0") return create();
    if (application != kApplication || tables != kTable) {
        cause_ = "it holds something else";
        return DatabaseFault::damaged;
    }
    fault = query("PRAGMA quick_check(1)", health);
    if (fault != DatabaseFault::none || health == "ok") return fault;
    cause_ = health;
    return DatabaseFault::damaged;
}

DatabaseFault DefaultsDatabase::create() {
    // There is nothing to lose yet, and waiting for the disk would be felt in the very first start
    // of the host. A loss of power may leave a torn file, which is set aside; sync() makes up for
    // it.
    auto fault = execute("PRAGMA synchronous=OFF");
    if (fault == DatabaseFault::none) fault = execute("PRAGMA journal_mode=WAL");
    if (fault != DatabaseFault::none) return fault;
    const std::string sql = std::string("BEGIN IMMEDIATE;") + kTable +
                            ";PRAGMA application_id=" + kApplication + ";COMMIT";
    return execute(sql.c_str());
}

DatabaseFault DefaultsDatabase::execute(const char* sql) {
    return faultOf(sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr));
}

DatabaseFault DefaultsDatabase::prepare(Statement& statement, const char* sql) {
    if (statement) return DatabaseFault::none;
    sqlite3_stmt* prepared = nullptr;
    const int code =
        sqlite3_prepare_v3(database_.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
    statement.reset(prepared);
    return faultOf(code);
}

DatabaseFault DefaultsDatabase::query(const char* sql, std::string& firstValue) {
    Statement statement;
    const auto fault = prepare(statement, sql);
    if (fault != DatabaseFault::none) return fault;
    const int code = sqlite3_step(statement.get());
    if (code == SQLITE_ROW) firstValue = columnText(statement.get(), 0);
    return faultOf(code);
}

/// Runs a statement up to its first row or its end; the caller resets it.
DatabaseFault DefaultsDatabase::run(Statement& statement, const char* sql,
                                    std::initializer_list<const std::string*> values) {
    const auto fault = prepare(statement, sql);
    if (fault != DatabaseFault::none) return fault;
    int index = 0;
    for (const std::string* value : values) {
        const int code = sqlite3_bind_text64(statement.get(), ++index, value->data(), value->size(),
                                             SQLITE_STATIC, SQLITE_UTF8);
        if (code != SQLITE_OK) return faultOf(code);
    }
    return faultOf(sqlite3_step(statement.get()));
}

DatabaseFault DefaultsDatabase::read(const std::string& key, std::optional<std::string>& text) {
    text.reset();
    const auto fault = run(read_, "SELECT value FROM defaults WHERE key=?1", {&key});
    if (fault == DatabaseFault::none && sqlite3_data_count(read_.get()) > 0) {
        text = columnText(read_.get(), 0);
    }
    sqlite3_reset(read_.get());
    return fault;
}

DatabaseFault DefaultsDatabase::write(const std::string& key, const std::string& text) {
    const auto fault = run(write_,
                           "INSERT INTO defaults(key, value) VALUES(?1, ?2) "
                           "ON CONFLICT(key) DO UPDATE SET value=excluded.value",
                           {&key, &text});
    sqlite3_reset(write_.get());
    return fault;
}

DatabaseFault DefaultsDatabase::remove(const std::string& key) {
    const auto fault = run(remove_, "DELETE FROM defaults WHERE key=?1", {&key});
    sqlite3_reset(remove_.get());
    return fault;
}

DatabaseFault DefaultsDatabase::keys(std::vector<std::string>& keys) {
    keys.clear();
    Statement all;
    auto fault = prepare(all, "SELECT key FROM defaults");
    while (fault == DatabaseFault::none) {
        const int code = sqlite3_step(all.get());
        if (code != SQLITE_ROW) return faultOf(code);
        keys.push_back(columnText(all.get(), 0));
    }
    return fault;
}

DatabaseFault DefaultsDatabase::sync() {
    // A fully synchronous commit takes all earlier ones in the log with it.
    auto fault = execute("PRAGMA synchronous=FULL");
    if (fault == DatabaseFault::none) fault = execute("PRAGMA user_version=1");
    const auto back = execute("PRAGMA synchronous=NORMAL");
    if (fault == DatabaseFault::none) fault = back;
    return fault == DatabaseFault::none ? syncFile() : fault;
}

DatabaseFault DefaultsDatabase::syncFile() {
    // The log alone is no database: its file was made without waiting for the disk.
    sqlite3_file* file = nullptr;
    const int code =
        sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
    if (code != SQLITE_OK || !file || !file->pMethods) return DatabaseFault::unavailable;
    return faultOf(file->pMethods->xSync(file, SQLITE_SYNC_NORMAL));
}

bool DefaultsDatabase::isReplaced() const {
    int moved = 0;
    sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    return moved != 0;
}

}  // namespace supportsdk
