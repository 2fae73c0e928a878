#pragma once

#include <map>
#include <optional>
#include <string>

#include "supportsdk/platform/Platform.h"

namespace supportsdk {

/// Where the service lives, as the one who ships the kit decides.
struct Deployment {
    /// Base address of the production service; "" when unknown.
    std::string productionHost;
    /// A host under the legacy suffix is taken to the same name under the other one. Both begin
    /// with a point and cover the whole domain; nothing is rewritten while the first is "".
    std::string legacyDomainSuffix;
    std::string domainSuffix;
    /// The servers that a developer can pick, by name.
    std::map<std::string, std::string> developerServers;

    /// Reads deployment.json of the host's main bundle, else of the kit's. A file that is damaged
    /// is logged and passed over; what no file says is empty. Main thread.
    static Deployment load(const Platform& platform);
};

}  // namespace supportsdk
