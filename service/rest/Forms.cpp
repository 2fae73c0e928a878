#include "service/rest/Desk.h"
#include "service/state/Identifiers.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

Answer get(const Desk& desk, const Call& call) {
    const auto id = call.parameter("id");
    if (!id) return results(listOwn(desk, kind::form, call));
    const auto form = findOwn(desk, kind::form, *id, call);
    return form ? results(Json::array({*form})) : failure(404, "This form is unknown.");
}

Answer putLog(const Desk& desk, const Call& call) {
    const auto formId = call.parameter("form_id").value_or("");
    if (!findOwn(desk, kind::form, formId, call)) return failure(404, "This form is unknown.");
    const auto* log = valueForKey(call.body, "checklists_log");
    if (!log || !log->is_object()) return failure(400, "\"checklists_log\" is missing.");

    const auto id = std::to_string(desk.store.next("form_log", 1));
    const auto now = dateTimeText(std::chrono::system_clock::now());
    desk.store.put(kind::formLog, id,
                   {{"id", id}, {"form_id", formId}, {"created", now}, {"checklists_log", *log}});
    desk.store.update(kind::form, formId, [&](Json& form) {
        form["latest_log_id"] = id;
        form["latest_log_complete"] = "1";
    });
    return results(Json::array({{{"id", id}, {"checklist_id", formId}}}));
}

}  // namespace

void addFormRoutes(Router& router, Desk& desk) {
    router.add("GET", "/sdk/v1/forms/get", Body::none,
               [&desk](Call& call) { return get(desk, call); });
    router.add("POST", "/sdk/v1/forms/logs_put", Body::json,
               [&desk](Call& call) { return putLog(desk, call); });
}

}  // namespace supportsdk::service
