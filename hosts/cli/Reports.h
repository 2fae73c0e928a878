#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "supportsdk/platform/Values.h"

namespace supportsdk::host {

/// Writes what happened to a descriptor: one JSON object a line, at once and in order. When nobody
/// reads any more, reports are dropped. Main thread.
class Reports {
 public:
    explicit Reports(int descriptor) : descriptor_(descriptor) {}

    /// `fields` is an object or null; "is" and "at" come before its keys.
    void write(const std::string& is, const Json& fields = Json());
    void refuse(const std::string& why) { write("refused", {{"why", why}}); }

 private:
    void send(std::string_view rest);

    const int descriptor_;
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    bool isClosed_ = false;
};

}  // namespace supportsdk::host
