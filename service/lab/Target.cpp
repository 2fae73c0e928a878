#include "service/lab/Target.h"

#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

std::optional<Json> targetChat(const Desk& desk, const Json& names) {
    auto commId = stringForKey(names, "comm");
    if (const auto issueId = stringForKey(names, "issue"); !commId && issueId) {
        const auto issue = desk.store.get(kind::issue, *issueId);
        if (issue) commId = stringForKey(*issue, "comm_id");
    }
    return commId ? desk.store.get(kind::comm, *commId) : std::nullopt;
}

}  // namespace supportsdk::service
