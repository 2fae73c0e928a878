#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "backends/sqlite/DefaultsDatabase.h"
#include "supportsdk/platform/Log.h"
#include "supportsdk/platform/UserDefaults.h"

namespace supportsdk {

/// One suite: its database, and what the database could not take.
class SqliteSuite : public UserDefaults {
 public:
    SqliteSuite(std::filesystem::path file, std::shared_ptr<Log> log);

    [[nodiscard]] std::optional<Json> value(const std::string& key) const override;
    void setValue(const std::string& key, const Json& value) override;
    void remove(const std::string& key) override;
    bool flush() override;
    [[nodiscard]] std::vector<std::string> keys() const override;

 private:
    using Operation = std::function<DatabaseFault(DefaultsDatabase&)>;

    bool attempt(const Operation& operation) const;
    bool ensureOpen(bool condemned) const;
    void replaceDamaged() const;
    bool store(const std::string& key, const std::optional<Json>& value) const;
    void change(const std::string& key, std::optional<Json> value);
    void report(const std::string& line) const;

    const std::filesystem::path file_;
    const std::shared_ptr<Log> log_;
    mutable std::mutex mutex_;
    // Reading opens, repairs and replaces the file, hence mutable.
    mutable std::unique_ptr<DefaultsDatabase> database_;
    /// Set when the file could not be opened; only flush() tries again.
    mutable bool memoryOnly_ = false;
    mutable bool reportedMemoryOnly_ = false;
    mutable std::string cause_;
    /// Changes that are not in the database: values, and nothing for what was removed.
    std::map<std::string, std::optional<Json>> unsaved_;
};

}  // namespace supportsdk
