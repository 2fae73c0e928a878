#include "backends/sqlite/SqliteUserDefaults.h"

#include "backends/sqlite/SqliteSuite.h"
#include "backends/sqlite/SuiteFileName.h"

namespace supportsdk {

SqliteUserDefaultsStore::SqliteUserDefaultsStore(std::filesystem::path folder,
                                                 std::shared_ptr<Log> log)
    : folder_(std::move(folder)), log_(std::move(log)) {}

SqliteUserDefaultsStore::~SqliteUserDefaultsStore() = default;

std::shared_ptr<UserDefaults> SqliteUserDefaultsStore::standard() {
    return suite({});
}

std::shared_ptr<UserDefaults> SqliteUserDefaultsStore::suite(const std::string& name) {
    const std::lock_guard lock(mutex_);
    auto& found = suites_[name];
    if (!found) found = std::make_shared<SqliteSuite>(folder_ / suiteFileName(name), log_);
    return found;
}

}  // namespace supportsdk
