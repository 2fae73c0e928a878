#pragma once

#include <memory>
#include <vector>

#include "hosts/cli/Reports.h"
#include "supportsdk/platform/Registration.h"

namespace supportsdk::host {

/// Reports what goes over the event channel, and the notifications outside it, while it lives.
class EventReporter {
 public:
    explicit EventReporter(const std::shared_ptr<Reports>& reports);

 private:
    std::vector<Registration> observations_;
};

}  // namespace supportsdk::host
