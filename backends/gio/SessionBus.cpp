#include "backends/gio/SessionBus.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace supportsdk {

namespace {

/// The addresses of the list, which are tried in turn, but for those that would start a bus.
std::string withoutAutolaunch(std::string_view addresses) {
    std::string kept;
    while (!addresses.empty()) {
        const auto end = std::min(addresses.find(';'), addresses.size());
        const auto address = addresses.substr(0, end);
        addresses.remove_prefix(std::min(end + 1, addresses.size()));
        if (address.empty() || address.starts_with("autolaunch:")) continue;
        if (!kept.empty()) kept += ';';
        kept += address;
    }
    return kept;
}

/// The address of the session bus, if it runs. Not asked of GLib, which would start a bus.
std::string sessionBusAddress() {
    if (const char* address = g_getenv("DBUS_SESSION_BUS_ADDRESS"); address && *address)
        return withoutAutolaunch(address);
    const std::string socket = std::string(g_get_user_runtime_dir()) + "/bus";
    if (!g_file_test(socket.c_str(), G_FILE_TEST_EXISTS)) return {};
    gchar* escaped = g_dbus_address_escape_value(socket.c_str());
    std::string address = std::string("unix:path=") + escaped;
    g_free(escaped);
    return address;
}

}  // namespace

BusConnection connectToSessionBus(GCancellable* cancellable) {
    const auto address = sessionBusAddress();
    if (address.empty()) return nullptr;
    constexpr auto flags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    BusConnection connection(g_dbus_connection_new_for_address_sync(address.c_str(), flags, nullptr,
                                                                    cancellable, nullptr));
    // The default would end the host's process together with the bus.
    if (connection) g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
    return connection;
}

}  // namespace supportsdk
