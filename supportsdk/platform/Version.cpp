#include "supportsdk/platform/Version.h"

#include "supportsdk/platform/GeneratedVersion.h"

namespace supportsdk {

std::string_view libraryVersion() {
    return SUPPORTSDK_GENERATED_VERSION;
}
std::string_view libraryBuild() {
    return SUPPORTSDK_GENERATED_BUILD;
}

}  // namespace supportsdk
