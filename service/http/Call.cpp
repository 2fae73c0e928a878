#include "service/http/Call.h"

#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

Answer ok(const Json& body) {
    return {200, dumpJson(body)};
}

Answer results(Json list) {
    return ok({{"results", std::move(list)}});
}

Answer failure(int status, const std::string& message) {
    return {status, dumpJson({{"message", message}})};
}

Answer bytes(std::string content, std::string contentType) {
    return {200, std::move(content), std::move(contentType)};
}

}  // namespace supportsdk::service
