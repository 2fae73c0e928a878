#pragma once

#include <mutex>

#include "supportsdk/platform/Log.h"

namespace supportsdk::test {

/// A log that any thread may write to.
class SharedLog : public Log {
 public:
    void write(std::string_view line) override {
        const std::lock_guard lock(mutex_);
        text_.append(line).append("\n");
    }
    [[nodiscard]] std::string text() const {
        const std::lock_guard lock(mutex_);
        return text_;
    }

 private:
    mutable std::mutex mutex_;
    std::string text_;
};

}  // namespace supportsdk::test
