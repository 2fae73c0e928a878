#include "backends/gio/PortalUrlOpener.h"

#include <gio/gio.h>

#include "backends/gio/PortalRequest.h"

namespace supportsdk {

struct PortalUrlOpener::Cancel {
    Cancel() = default;
    ~Cancel() { g_object_unref(cancellable); }
    Cancel(const Cancel&) = delete;
    Cancel& operator=(const Cancel&) = delete;

    GCancellable* cancellable = g_cancellable_new();
};

PortalUrlOpener::PortalUrlOpener(PortalUrlOpenerOptions options) : options_(std::move(options)) {}

PortalUrlOpener::~PortalUrlOpener() {
    if (cancel_) g_cancellable_cancel(cancel_->cancellable);
}

bool PortalUrlOpener::canOpen(const std::string& url) {
    gchar* scheme = g_uri_parse_scheme(url.c_str());
    if (!scheme) return false;
    gchar* lower = g_ascii_strdown(scheme, -1);
    GAppInfo* handler = g_app_info_get_default_for_uri_scheme(lower);
    g_free(lower);
    g_free(scheme);
    if (!handler) return false;
    g_object_unref(handler);
    return true;
}

void PortalUrlOpener::open(const std::string& url, std::function<void(bool worked)> completion) {
    if (!cancel_) cancel_ = std::make_shared<Cancel>();
    const PortalTimeouts timeouts{options_.callTimeout, options_.choiceTimeout};
    // The queues are held weakly: the host may let go of them while the portal thinks.
    options_.backgroundQueue->post([url, timeouts, cancel = cancel_,
                                    weakQueue = std::weak_ptr(options_.mainQueue),
                                    completion = std::move(completion)]() mutable {
        const bool worked = openThroughPortal(url, timeouts, cancel->cancellable);
        if (const auto queue = weakQueue.lock()) {
            queue->post([completion = std::move(completion), worked] {
                if (completion) completion(worked);
            });
        }
    });
}

bool PortalUrlOpener::canSendMail() {
    return canOpen("mailto:");
}

}  // namespace supportsdk
