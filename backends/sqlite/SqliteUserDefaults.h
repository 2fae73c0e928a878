#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "supportsdk/platform/Log.h"
#include "supportsdk/platform/UserDefaults.h"

namespace supportsdk {

/// User defaults in SQLite files, one for each suite, all in one folder that is made (mode 0700)
/// with the first read or write. Any thread.
///
/// A value set survives the end of the process at any instant, and a loss of power after flush().
/// Several processes may use one folder: each sees what the others wrote. A damaged file is set
/// aside as "<file>.damaged-<time>", reported in the log, and an empty one takes its place. Where
/// the folder cannot be used, values last as long as the process, and the log says so once.
class SqliteUserDefaultsStore : public UserDefaultsStore {
 public:
    /// Opens nothing. `log` may be null.
    explicit SqliteUserDefaultsStore(std::filesystem::path folder, std::shared_ptr<Log> log = {});
    ~SqliteUserDefaultsStore() override;

    [[nodiscard]] std::shared_ptr<UserDefaults> standard() override;
    /// Any text is a suite name; "" is the standard suite.
    [[nodiscard]] std::shared_ptr<UserDefaults> suite(const std::string& name) override;

 private:
    std::filesystem::path folder_;
    std::shared_ptr<Log> log_;
    std::mutex mutex_;
    std::map<std::string, std::shared_ptr<UserDefaults>> suites_;
};

}  // namespace supportsdk
