#include "backends/sqlite/SqliteSuite.h"

#include <set>

#include "backends/sqlite/DefaultsFolder.h"

namespace supportsdk {

SqliteSuite::SqliteSuite(std::filesystem::path file, std::shared_ptr<Log> log)
    : file_(std::move(file)), log_(std::move(log)) {}

std::optional<Json> SqliteSuite::value(const std::string& key) const {
    const std::lock_guard lock(mutex_);
    if (const auto found = unsaved_.find(key); found != unsaved_.end()) return found->second;
    std::optional<std::string> text;
    attempt([&](DefaultsDatabase& database) { return database.read(key, text); });
    if (!text) return std::nullopt;
    Json parsed = Json::parse(*text, nullptr, false);
    if (!parsed.is_discarded()) return parsed;
    report("a value is damaged and counts as missing");
    return std::nullopt;
}

void SqliteSuite::setValue(const std::string& key, const Json& value) {
    change(key, value);
}

void SqliteSuite::remove(const std::string& key) {
    change(key, std::nullopt);
}

void SqliteSuite::change(const std::string& key, std::optional<Json> value) {
    const std::lock_guard lock(mutex_);
    if (store(key, value)) {
        unsaved_.erase(key);
        return;
    }
    if (!memoryOnly_) report("a value could not be stored: " + cause_);
    unsaved_[key] = std::move(value);
}

bool SqliteSuite::flush() {
    const std::lock_guard lock(mutex_);
    memoryOnly_ = false;
    for (auto each = unsaved_.begin(); each != unsaved_.end();) {
        if (!store(each->first, each->second)) return false;
        each = unsaved_.erase(each);
    }
    return attempt([](DefaultsDatabase& database) { return database.sync(); }) &&
           syncFolder(file_.parent_path());
}

std::vector<std::string> SqliteSuite::keys() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> stored;
    attempt([&](DefaultsDatabase& database) { return database.keys(stored); });
    std::set<std::string> all(stored.begin(), stored.end());
    for (const auto& [key, value] : unsaved_) {
        if (value) {
            all.insert(key);
        } else {
            all.erase(key);
        }
    }
    return {all.begin(), all.end()};
}

bool SqliteSuite::store(const std::string& key, const std::optional<Json>& value) const {
    if (!value) {
        return attempt([&](DefaultsDatabase& database) { return database.remove(key); });
    }
    const auto text = value->dump(-1, ' ', false, Json::error_handler_t::replace);
    return attempt([&](DefaultsDatabase& database) { return database.write(key, text); });
}

/// Damage shows itself at any time. The first time the file is opened and checked anew, since
/// another process may have replaced it by now; if that finds nothing and it happens again, it
/// goes.
bool SqliteSuite::attempt(const Operation& operation) const {
    constexpr int kTries = 4;
    int damages = 0;
    for (int tried = 0; tried < kTries; ++tried) {
        if (!ensureOpen(damages == 2)) return false;
        const auto fault = operation(*database_);
        // A file that another process set aside meanwhile has swallowed the change.
        if (fault == DatabaseFault::none && !database_->isReplaced()) return true;
        cause_ = database_->cause();
        if (fault == DatabaseFault::unavailable) return false;
        if (fault == DatabaseFault::damaged) ++damages;
        database_.reset();
    }
    return false;
}

bool SqliteSuite::ensureOpen(bool condemned) const {
    if (database_) return true;
    if (memoryOnly_) return false;
    makePrivateFolder(file_.parent_path());
    const OpeningLock lock(file_);
    if (condemned) replaceDamaged();
    auto fault = DatabaseFault::damaged;
    for (int tries = 0; tries < 2 && fault == DatabaseFault::damaged; ++tries) {
        makePrivateFile(file_);
        database_ = std::make_unique<DefaultsDatabase>();
        fault = database_->open(file_);
        if (fault == DatabaseFault::none) return true;
        cause_ = database_->cause();
        database_.reset();
        if (fault == DatabaseFault::damaged) replaceDamaged();
    }
    memoryOnly_ = true;
    if (!reportedMemoryOnly_) {
        reportedMemoryOnly_ = true;
        report("kept in memory only: " + cause_);
    }
    return false;
}

void SqliteSuite::replaceDamaged() const {
    const auto name = std::filesystem::path(setAside(file_)).filename().string();
    report("damaged (" + cause_ + "); " +
           (name.empty() ? "it stays in the way" : "kept as " + name));
}

void SqliteSuite::report(const std::string& line) const {
    if (log_) log_->write("User defaults " + file_.filename().string() + ": " + line);
}

}  // namespace supportsdk
