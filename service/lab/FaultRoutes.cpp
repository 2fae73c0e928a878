#include "service/http/Faults.h"
#include "service/lab/Lab.h"

namespace supportsdk::service {

void addLabFaultRoutes(Router& router, Faults& faults) {
    router.add("GET", "/lab/faults", Body::none,
               [&faults](Call&) { return results(faults.list()); });
    router.add("POST", "/lab/faults", Body::json, [&faults](Call& call) {
        const auto fault = Fault::read(call.body);
        if (!fault) return failure(400, "This is no fault: see \"kind\" and \"path\".");
        return ok({{"id", faults.add(*fault)}});
    });
    router.add("DELETE", "/lab/faults", Body::none, [&faults](Call&) {
        faults.clear();
        return ok(Json::object());
    });
    router.add("DELETE", "/lab/faults/*", Body::none, [&faults](Call& call) {
        const bool removed = faults.remove(std::atoi(call.id.c_str()));
        return removed ? ok(Json::object()) : failure(404, "This fault is unknown.");
    });
}

}  // namespace supportsdk::service
