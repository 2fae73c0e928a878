#include "service/rest/Credentials.h"

#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

std::optional<Answer> authenticate(Call& call, const Store& store) {
    const auto name = call.header("x-quorrand-integration");
    if (name.empty()) return failure(401, "The integration is missing.");
    auto integration = store.get(kind::integration, name);
    if (!integration) return failure(401, "This integration is unknown.");
    if (stringForKey(*integration, "apiKey") != call.header("x-quorrand-key"))
        return failure(401, "The key of the integration is wrong or missing.");
    const auto token = stringForKey(*integration, "partnerToken");
    if (token && *token != call.header("x-quorrand-token"))
        return failure(401, "The token of the partner is wrong or missing.");
    call.integrationId = name;
    call.integration = std::move(*integration);
    return std::nullopt;
}

}  // namespace supportsdk::service
