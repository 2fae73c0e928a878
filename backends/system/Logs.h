#pragma once

#include <filesystem>
#include <mutex>
#include <string>
#include <string_view>

#include "supportsdk/platform/Log.h"

namespace supportsdk {

/// Lines on standard error. Control characters are shown as '?', so that foreign text can neither
/// forge a line nor steer a terminal.
class StderrLog final : public Log {
 public:
    void write(std::string_view line) override;
};

/// Lines at the end of a file, with the same care; readable by its owner alone. The file is made
/// with the first line. What cannot be written is dropped.
class FileLog final : public Log {
 public:
    explicit FileLog(std::filesystem::path file) : file_(std::move(file)) {}
    ~FileLog() override;
    FileLog(const FileLog&) = delete;
    FileLog& operator=(const FileLog&) = delete;

    void write(std::string_view line) override;

 private:
    const std::filesystem::path file_;
    std::once_flag opened_;
    int descriptor_ = -1;
};

}  // namespace supportsdk
