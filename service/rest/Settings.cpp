#include "service/rest/Desk.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

void addSettingsRoutes(Router& router, Desk&) {
    router.add("GET", "/sdk/v1/app/get", Body::none,
               [](Call& call) { return ok(dictionaryForKey(call.integration, "settings")); });
}

}  // namespace supportsdk::service
