#include "supportsdk/core/Deployment.h"

#include "supportsdk/core/Fields.h"

namespace supportsdk {

namespace {

Deployment read(const Json& file) {
    Deployment deployment;
    deployment.productionHost = stringForKey(file, "productionHost").value_or("");
    deployment.legacyDomainSuffix = stringForKey(file, "legacyDomainSuffix").value_or("");
    deployment.domainSuffix = stringForKey(file, "domainSuffix").value_or("");
    const auto& servers = dictionaryForKey(file, "developerServers");
    for (const auto& [name, host] : servers.items()) {
        if (const auto address = stringForKey(servers, name)) {
            deployment.developerServers[name] = *address;
        }
    }
    return deployment;
}

}  // namespace

Deployment Deployment::load(const Platform& platform) {
    for (const auto& bundle : {platform.mainBundle, platform.kitBundle}) {
        const auto data = bundle->data("deployment", "json");
        if (!data) continue;
        const auto file = parseJson(toText(*data));
        if (file && file->is_object()) return read(*file);
        platform.log->write("deployment.json is damaged");
    }
    platform.log->write("There is no usable deployment.json");
    return {};
}

}  // namespace supportsdk
