#include "service/rest/Desk.h"

#include <algorithm>

#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {
bool isOwn(const Json& record, const Call& call) {
    return stringForKey(record, "integration") == call.integrationId;
}
}  // namespace

std::optional<Json> findOwn(const Desk& desk, const std::string& kind, const std::string& id,
                            const Call& call) {
    auto record = desk.store.get(kind, id);
    if (!record || !isOwn(*record, call)) return std::nullopt;
    return record;
}

std::vector<Json> listOwn(const Desk& desk, const std::string& kind, const Call& call) {
    auto records = desk.store.list(kind);
    std::erase_if(records, [&call](const Json& record) { return !isOwn(record, call); });
    return records;
}

}  // namespace supportsdk::service
