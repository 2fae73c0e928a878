#pragma once

#include <gio/gio.h>

#include <functional>
#include <thread>

namespace supportsdk {

/// Reads the desktop's colour scheme from the portal (org.freedesktop.portal.Settings on the
/// session bus) and again whenever it changes or the portal starts, on a thread of its own that
/// sleeps in between. Destroying it waits for `known` to return, and for nothing else.
class ColorSchemeWatcher {
 public:
    /// `known` runs on the watcher's thread, and tells whether a dark look is wanted. Never without
    /// a portal.
    explicit ColorSchemeWatcher(std::function<void(bool dark)> known);
    ~ColorSchemeWatcher();
    ColorSchemeWatcher(const ColorSchemeWatcher&) = delete;
    ColorSchemeWatcher& operator=(const ColorSchemeWatcher&) = delete;

 private:
    void watch();
    void read(GDBusConnection* connection);
    void take(GVariant* value);

    const std::function<void(bool)> known_;
    GCancellable* const cancellable_ = g_cancellable_new();
    std::thread thread_;
};

}  // namespace supportsdk
