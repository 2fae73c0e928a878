#include "backends/gio/ColorSchemeWatcher.h"

#include <string_view>

#include "backends/gio/SessionBus.h"
#include "backends/posix/Threads.h"

namespace supportsdk {

namespace {

constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";
constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* colorScheme = "color-scheme";
constexpr guint32 preferDark = 1;
constexpr gint callMilliseconds = 10'000;

Variant callRead(GDBusConnection* connection, const char* method, GCancellable* cancellable) {
    return Variant(g_dbus_connection_call_sync(
        connection, portalName, portalPath, settingsInterface, method,
        g_variant_new("(ss)", appearance, colorScheme), G_VARIANT_TYPE("(v)"),
        G_DBUS_CALL_FLAGS_NONE, callMilliseconds, cancellable, nullptr));
}

}  // namespace

ColorSchemeWatcher::ColorSchemeWatcher(std::function<void(bool dark)> known)
    : known_(std::move(known)) {
    // Without a thread the look stays as it is.
    thread_ = startThread("support-scheme", [this] { watch(); });
}

ColorSchemeWatcher::~ColorSchemeWatcher() {
    g_cancellable_cancel(cancellable_);
    if (thread_.joinable()) thread_.join();
    g_object_unref(cancellable_);
}

void ColorSchemeWatcher::watch() {
    const ThreadContext context;
    const auto connection = connectToSessionBus(cancellable_);
    if (!connection) return;
    const guint changes = g_dbus_connection_signal_subscribe(
        connection.get(), portalName, settingsInterface, "SettingChanged", portalPath, appearance,
        G_DBUS_SIGNAL_FLAGS_NONE,
        [](GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
           GVariant* parameters, gpointer self) {
            if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ssv)"))) return;
            const gchar* key = nullptr;
            g_variant_get_child(parameters, 1, "&s", &key);
            if (key != std::string_view(colorScheme)) return;
            const Variant value(g_variant_get_child_value(parameters, 2));
            static_cast<ColorSchemeWatcher*>(self)->take(value.get());
        },
        this, nullptr);
    // The portal may start late, and again with another value.
    const guint owner = g_bus_watch_name_on_connection(
        connection.get(), portalName, G_BUS_NAME_WATCHER_FLAGS_AUTO_START,
        [](GDBusConnection* bus, const gchar*, const gchar*, gpointer self) {
            static_cast<ColorSchemeWatcher*>(self)->read(bus);
        },
        nullptr, this, nullptr);
    runUntil([] { return false; }, connection.get(), context.get(), cancellable_);
    g_bus_unwatch_name(owner);
    g_dbus_connection_signal_unsubscribe(connection.get(), changes);
}

void ColorSchemeWatcher::read(GDBusConnection* connection) {
    auto reply = callRead(connection, "ReadOne", cancellable_);
    // Portals before version 2 of the interface know this one only.
    if (!reply) reply = callRead(connection, "Read", cancellable_);
    if (!reply) return;
    const Variant value(g_variant_get_child_value(reply.get(), 0));
    take(value.get());
}

void ColorSchemeWatcher::take(GVariant* value) {
    Variant inner(g_variant_ref(value));
    // "Read" wraps it twice.
    while (g_variant_is_of_type(inner.get(), G_VARIANT_TYPE_VARIANT))
        inner.reset(g_variant_get_variant(inner.get()));
    if (g_variant_is_of_type(inner.get(), G_VARIANT_TYPE_UINT32))
        known_(g_variant_get_uint32(inner.get()) == preferDark);
}

}  // namespace supportsdk
