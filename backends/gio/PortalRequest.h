#pragma once

#include <gio/gio.h>

#include <chrono>
#include <string>

namespace supportsdk {

struct PortalTimeouts {
    std::chrono::milliseconds call;
    std::chrono::milliseconds choice;
};

/// Asks the desktop portal to open `url` and waits for its answer, blocking the caller. True when
/// the portal says that it worked. `cancellable` ends the waiting.
bool openThroughPortal(const std::string& url, const PortalTimeouts& timeouts,
                       GCancellable* cancellable);

}  // namespace supportsdk
