#pragma once

#include <gio/gio.h>

#include <memory>

namespace supportsdk {

struct UnrefObject {
    void operator()(gpointer object) const { g_object_unref(object); }
};
using BusConnection = std::unique_ptr<GDBusConnection, UnrefObject>;

struct UnrefVariant {
    void operator()(GVariant* value) const { g_variant_unref(value); }
};
using Variant = std::unique_ptr<GVariant, UnrefVariant>;

/// The desktop portal on the session bus.
inline constexpr const char* portalName = "org.freedesktop.portal.Desktop";
inline constexpr const char* portalPath = "/org/freedesktop/portal/desktop";

/// A main context for this thread alone, so that nobody else has to run a loop.
class ThreadContext {
 public:
    ThreadContext() { g_main_context_push_thread_default(context_); }
    ~ThreadContext() {
        g_main_context_pop_thread_default(context_);
        g_main_context_unref(context_);
    }
    ThreadContext(const ThreadContext&) = delete;
    ThreadContext& operator=(const ThreadContext&) = delete;

    [[nodiscard]] GMainContext* get() const { return context_; }

 private:
    GMainContext* context_ = g_main_context_new();
};

/// A connection of its own, blocking the caller until there is one; null without a session bus. It
/// never starts a bus, and the process outlives the bus.
BusConnection connectToSessionBus(GCancellable* cancellable);

/// Runs `context`, blocking the caller, until `isDone`, `cancellable` is cancelled or `connection`
/// is closed. `isDone` is asked whenever something happened in the context.
template <typename Done>
void runUntil(const Done& isDone, GDBusConnection* connection, GMainContext* context,
              GCancellable* cancellable) {
    // No source of the cancellable: its owner may still be at it, in its own thread, when this one
    // has seen the end and frees the context. Disconnecting waits for the owner.
    const auto cancelled =
        g_cancellable_connect(cancellable, G_CALLBACK(+[](GCancellable*, gpointer loop) {
                                  g_main_context_wakeup(static_cast<GMainContext*>(loop));
                              }),
                              context, nullptr);
    const auto closed = g_signal_connect(
        connection, "closed", G_CALLBACK(+[](GDBusConnection*, gboolean, GError*, gpointer loop) {
            g_main_context_wakeup(static_cast<GMainContext*>(loop));
        }),
        context);
    while (!isDone() && !g_cancellable_is_cancelled(cancellable) &&
           !g_dbus_connection_is_closed(connection))
        g_main_context_iteration(context, TRUE);
    g_signal_handler_disconnect(connection, closed);
    g_cancellable_disconnect(cancellable, cancelled);
}

}  // namespace supportsdk
