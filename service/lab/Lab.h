#pragma once

#include "service/rest/Desk.h"

namespace supportsdk::service {

class Faults;

/// The hands behind the service, under /lab: a technician who talks, faults, and a look at
/// everything that happened. Without credentials, for this machine alone.
void addLabRoomRoutes(Router& router, Desk& desk);
void addLabSightRoutes(Router& router, Desk& desk);
void addLabServerRoutes(Router& router, Desk& desk);
void addLabFaultRoutes(Router& router, Faults& faults);

}  // namespace supportsdk::service
