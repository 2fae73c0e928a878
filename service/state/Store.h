#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "supportsdk/platform/Values.h"

struct sqlite3;

namespace supportsdk::service {

/// Kinds of records, and what identifies one.
namespace kind {
inline constexpr char integration[] = "integration";  // its name
inline constexpr char technician[] = "technician";    // participant key
inline constexpr char customer[] = "customer";        // members_users_id
inline constexpr char article[] = "article";
inline constexpr char form[] = "form";
inline constexpr char journey[] = "journey";
inline constexpr char issue[] = "issue";
inline constexpr char comm[] = "comm";        // comm_id: one chat and its room
inline constexpr char account[] = "account";  // members_users_id: its XMPP account
inline constexpr char formLog[] = "form_log";
inline constexpr char check[] = "check";
inline constexpr char dump[] = "dump";
inline constexpr char upload[] = "upload";
inline constexpr char counter[] = "counter";
/// The lines of one chat.
inline std::string lineOf(const std::string& commId) {
    return "line/" + commId;
}
}  // namespace kind

/// What the service knows, as JSON objects in one SQLite file. A write that fails is dropped with a
/// line on stderr. Any thread.
class Store {
 public:
    /// Null when the file cannot be opened or is no database.
    static std::unique_ptr<Store> open(const std::filesystem::path& file);

    ~Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    void put(const std::string& kind, const std::string& id, const Json& record);
    [[nodiscard]] std::optional<Json> get(const std::string& kind, const std::string& id) const;
    /// In the order in which they were first put.
    [[nodiscard]] std::vector<Json> list(const std::string& kind) const;
    /// Reads, lets `change` work on it and writes, all at once; the new record, or nothing when
    /// there is none. `change` must not use the store.
    std::optional<Json> update(const std::string& kind, const std::string& id,
                               const std::function<void(Json&)>& change);
    /// Counts up from `first`.
    int next(const std::string& counter, int first);

    void putBytes(const std::string& id, const std::string& bytes);
    [[nodiscard]] std::optional<std::string> bytes(const std::string& id) const;

    /// Several writes as one, also for speed.
    void inOneTransaction(const std::function<void()>& writes);

 private:
    explicit Store(sqlite3* database) : database_(database) {}
    class Statement;
    bool run(const char* sql);

    sqlite3* database_;
    mutable std::recursive_mutex mutex_;
};

}  // namespace supportsdk::service
