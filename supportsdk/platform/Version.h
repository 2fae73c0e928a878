#pragma once

#include <string_view>

#include "supportsdk/platform/Export.h"

namespace supportsdk {

/// Version and build of the library that is loaded, as the build system states them.
SUPPORTSDK_API std::string_view libraryVersion();
SUPPORTSDK_API std::string_view libraryBuild();

}  // namespace supportsdk
