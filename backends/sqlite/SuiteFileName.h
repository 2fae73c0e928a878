#pragma once

#include <string>

namespace supportsdk {

/// The name of the file that holds a suite: always a plain name, a different one for each suite,
/// whatever the suite's name holds. "" is the standard suite.
[[nodiscard]] std::string suiteFileName(const std::string& suite);

}  // namespace supportsdk
