#include "supportsdk/proactive/CheckResponse.h"

#include <utility>

#include "supportsdk/core/Fields.h"
#include "supportsdk/core/RestResponse.h"
#include "supportsdk/core/TextNumbers.h"

namespace supportsdk {

namespace {

bool isSuccess(const Json& response) {
    const auto text = stringForKey(response, "status");
    return text ? integerOfText(*text) == 200 : integerForKey(response, "status") == 200;
}

}  // namespace

RestCallback byIntegerStatus(RestCallback success, RestCallback failure) {
    return [success = std::move(success), failure = std::move(failure)](const Json& response) {
        if (!response.is_object() || isUnreadable(response)) return;
        const auto& chosen = isSuccess(response) ? success : failure;
        if (chosen) chosen(response);
    };
}

}  // namespace supportsdk
