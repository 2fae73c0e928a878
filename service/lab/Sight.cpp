#include <algorithm>
#include <charconv>

#include "service/lab/Lab.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

constexpr std::uint64_t maximumWait = 60'000;

std::uint64_t number(const Call& call, const char* name) {
    const auto text = call.parameter(name).value_or("");
    std::uint64_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

/// Every parameter beside "after", "wait" and "kind" names a member and the text that it must have.
Answer events(const Desk& desk, const Call& call) {
    JournalQuery query{number(call, "after")};
    const auto kinds = call.parameter("kind").value_or("");
    for (std::size_t begin = 0; begin < kinds.size();) {
        const auto end = std::min(kinds.find(',', begin), kinds.size());
        query.kinds.insert(kinds.substr(begin, end - begin));
        begin = end + 1;
    }
    for (const auto& [name, value] : call.query) {
        if (name != "after" && name != "wait" && name != "kind") query.where[name] = value;
    }
    const auto wait = std::min(number(call, "wait"), maximumWait);
    return ok(desk.journal.read(query, std::chrono::milliseconds{wait}));
}

Answer issues(const Desk& desk, const Call& call) {
    const bool openOnly = call.parameter("open").has_value();
    Json list = Json::array();
    for (const auto& issue : desk.store.list(kind::issue)) {
        const auto status = integerForKey(issue, "status").value_or(0);
        if (!openOnly || status < issueStatus::resolved)
            list.push_back(desk.issues.forCaller(issue, call.base));
    }
    return results(std::move(list));
}

Answer issue(const Desk& desk, const Call& call) {
    const auto found = desk.store.get(kind::issue, call.id);
    if (!found) return failure(404, "This issue is unknown.");
    return results(Json::array({desk.issues.forCaller(*found, call.base)}));
}

/// Each check for itself, with what its batch has in common.
Answer checks(const Desk& desk) {
    Json list = Json::array();
    for (auto batch : desk.store.list(kind::check)) {
        const auto checks = arrayForKey(batch, "checks");
        batch["batch"] = stringForKey(batch, "id").value_or("");
        batch.erase("id");
        batch.erase("checks");
        for (auto check : checks) {
            check.update(batch);
            list.push_back(std::move(check));
        }
    }
    return results(std::move(list));
}

Answer dump(const Desk& desk, const Call& call) {
    auto content = desk.store.bytes("dump/" + call.id);
    if (!content) return failure(404, "This dump is unknown.");
    return bytes(std::move(*content), "application/octet-stream");
}

/// Changes the settings of an integration by a merge patch (RFC 7396).
Answer patchSettings(const Desk& desk, const Call& call) {
    const auto patch = dictionaryForKey(call.body, "patch");
    const auto changed = desk.store.update(
        kind::integration, stringForKey(call.body, "integration").value_or(""),
        [&patch](Json& integration) { integration["settings"].merge_patch(patch); });
    if (!changed) return failure(404, "This integration is unknown.");
    return ok(dictionaryForKey(*changed, "settings"));
}

}  // namespace

void addLabSightRoutes(Router& router, Desk& desk) {
    router.add("GET", "/lab/events", Body::none,
               [&desk](Call& call) { return events(desk, call); });
    router.add("GET", "/lab/issues", Body::none,
               [&desk](Call& call) { return issues(desk, call); });
    router.add("GET", "/lab/issues/*", Body::none,
               [&desk](Call& call) { return issue(desk, call); });
    router.add("GET", "/lab/records/*", Body::none,
               [&desk](Call& call) { return results(desk.store.list(call.id)); });
    router.add("GET", "/lab/checks", Body::none, [&desk](Call&) { return checks(desk); });
    router.add("GET", "/lab/dumps", Body::none,
               [&desk](Call&) { return results(desk.store.list(kind::dump)); });
    router.add("GET", "/lab/dumps/*", Body::none, [&desk](Call& call) { return dump(desk, call); });
    router.add("POST", "/lab/settings", Body::json,
               [&desk](Call& call) { return patchSettings(desk, call); });
}

}  // namespace supportsdk::service
