#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "backends/sqlite/SqliteUserDefaults.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk::test {

class DefaultsFixture : public testing::Test {
 protected:
    struct LineLog : Log {
        void write(std::string_view line) override { lines.emplace_back(line); }
        std::vector<std::string> lines;
    };

    /// A store of its own, as another process would have.
    [[nodiscard]] std::unique_ptr<SqliteUserDefaultsStore> open() {
        return std::make_unique<SqliteUserDefaultsStore>(data, log);
    }

    /// Runs `work` in a child process, which then ends without any clean-up.
    template <typename Work>
    static pid_t inChild(Work work) {
        const pid_t child = fork();
        if (child != 0) return child;
        work();
        _exit(0);
    }

    [[nodiscard]] std::vector<std::string> filesWith(const std::string& part) const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(data)) {
            const auto name = entry.path().filename().string();
            if (name.find(part) != std::string::npos) found.push_back(name);
        }
        return found;
    }

    TemporaryFolder folder;
    std::filesystem::path data = folder.path / "host" / "data";
    std::filesystem::path standardFile = data / "standard.sqlite";
    std::shared_ptr<LineLog> log = std::make_shared<LineLog>();
};

}  // namespace supportsdk::test
