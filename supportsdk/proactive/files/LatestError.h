#pragma once

#include <cerrno>
#include <system_error>

namespace supportsdk {

/// Why the latest call of the system failed.
inline std::error_code latestError() {
    return {errno, std::generic_category()};
}

}  // namespace supportsdk
