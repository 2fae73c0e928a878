#pragma once

#include <string_view>

namespace supportsdk {

/// Where diagnostic lines go: free text, no levels. Any thread. Lines never hold passwords, keys or
/// tokens.
class Log {
 public:
    virtual ~Log() = default;

    /// One line, without a line end of its own.
    virtual void write(std::string_view line) = 0;
};

}  // namespace supportsdk
