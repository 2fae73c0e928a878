#pragma once

#include <gio/gio.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace supportsdk {

struct PortalTimeouts {
    std::chrono::milliseconds call;
    std::chrono::milliseconds choice;
};

/// Asks the desktop portal to open `url` and waits for its answer, blocking the caller. True when
/// the portal says that it worked. `cancellable` ends the waiting.
bool openThroughPortal(const std::string& url, const PortalTimeouts& timeouts,
                       GCancellable* cancellable);

/// What became of a choice of files.
struct PortalChoice {
    /// A portal was there and took the question.
    bool isAnswered = false;
    /// The addresses of the chosen files; empty when the person chose none.
    std::vector<std::string> uris;
};

/// Lets a person choose pictures through the desktop portal, blocking the caller until they have
/// chosen. `cancellable` ends the waiting, and the portal takes its window away.
PortalChoice choosePicturesThroughPortal(const std::string& title, const PortalTimeouts& timeouts,
                                         GCancellable* cancellable);

}  // namespace supportsdk
