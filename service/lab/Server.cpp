#include <csignal>

#include "service/lab/Lab.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

Answer state(const Desk& desk) {
    return ok({{"pid", desk.rooms.processId()},
               {"running", desk.rooms.processId() > 0},
               {"port", desk.rooms.port()}});
}

bool send(const Desk& desk, int signalNumber) {
    const auto pid = desk.rooms.processId();
    return pid > 0 && kill(pid, signalNumber) == 0;
}

Answer steer(Desk& desk, const Call& call) {
    const auto order = stringForKey(call.body, "do").value_or("");
    bool worked = true;
    if (order == "kill") {
        desk.rooms.killServer();
    } else if (order == "start" || order == "restart") {
        worked = desk.rooms.start();
    } else if (order == "pause") {
        worked = send(desk, SIGSTOP);
    } else if (order == "resume") {
        worked = send(desk, SIGCONT);
    } else {
        return failure(400, "\"do\" is kill, start, restart, pause or resume.");
    }
    return worked ? state(desk) : failure(409, "The chat server does not follow.");
}

}  // namespace

void addLabServerRoutes(Router& router, Desk& desk) {
    router.add("GET", "/lab/prosody", Body::none, [&desk](Call&) { return state(desk); });
    router.add("POST", "/lab/prosody", Body::json,
               [&desk](Call& call) { return steer(desk, call); });
}

}  // namespace supportsdk::service
