#include "backends/gio/PortalRequest.h"

#include <optional>

#include "backends/gio/SessionBus.h"

namespace supportsdk {

namespace {

/// The portal answers at a path that ends with it; one request a connection, so any token will do.
constexpr const char* requestToken = "supportsdk";

/// Where the portal will send its answer: known before the call, so that no answer is missed.
std::string requestPath(GDBusConnection* connection) {
    std::string sender = g_dbus_connection_get_unique_name(connection);
    sender.erase(0, 1);
    for (auto& letter : sender) {
        if (letter == '.') letter = '_';
    }
    return std::string(portalPath) + "/request/" + sender + "/" + requestToken;
}

/// The answer of one request: 0 for done, anything else for not.
class Response {
 public:
    Response(GDBusConnection* connection, const std::string& path)
        : connection_(connection),
          subscription_(g_dbus_connection_signal_subscribe(
              connection, portalName, "org.freedesktop.portal.Request", "Response", path.c_str(),
              nullptr, G_DBUS_SIGNAL_FLAGS_NONE, &Response::receive, this, nullptr)) {}
    ~Response() { g_dbus_connection_signal_unsubscribe(connection_, subscription_); }
    Response(const Response&) = delete;
    Response& operator=(const Response&) = delete;

    std::optional<guint32> code;

 private:
    static void receive(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                        GVariant* parameters, gpointer self) {
        if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ua{sv})"))) return;
        guint32 code = 0;
        g_variant_get_child(parameters, 0, "u", &code);
        static_cast<Response*>(self)->code = code;
    }

    GDBusConnection* connection_;
    guint subscription_;
};

bool callOpenUri(GDBusConnection* connection, const std::string& url,
                 std::chrono::milliseconds limit, GCancellable* cancellable) {
    GVariantBuilder options;
    g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&options, "{sv}", "handle_token", g_variant_new_string(requestToken));
    const Variant reply(g_dbus_connection_call_sync(
        connection, portalName, portalPath, "org.freedesktop.portal.OpenURI", "OpenURI",
        g_variant_new("(ssa{sv})", "", url.c_str(), &options), G_VARIANT_TYPE("(o)"),
        G_DBUS_CALL_FLAGS_NONE, static_cast<gint>(limit.count()), cancellable, nullptr));
    return reply != nullptr;
}

/// Runs `context` until there is an answer, the connection is gone, or time is up.
void waitFor(const Response& response, GDBusConnection* connection, GMainContext* context,
             std::chrono::milliseconds limit, GCancellable* cancellable) {
    bool timeUp = false;
    const auto mark = [](gpointer flag) -> gboolean {
        *static_cast<bool*>(flag) = true;
        return G_SOURCE_REMOVE;
    };
    GSource* timer = g_timeout_source_new(static_cast<guint>(limit.count()));
    g_source_set_callback(timer, mark, &timeUp, nullptr);
    g_source_attach(timer, context);
    runUntil([&] { return response.code || timeUp; }, connection, context, cancellable);
    g_source_destroy(timer);
    g_source_unref(timer);
}

}  // namespace

bool openThroughPortal(const std::string& url, const PortalTimeouts& timeouts,
                       GCancellable* cancellable) {
    if (!g_utf8_validate(url.data(), static_cast<gssize>(url.size()), nullptr)) return false;
    const ThreadContext context;
    const auto connection = connectToSessionBus(cancellable);
    if (!connection) return false;
    std::optional<guint32> code;
    {
        const Response response(connection.get(), requestPath(connection.get()));
        if (callOpenUri(connection.get(), url, timeouts.call, cancellable))
            waitFor(response, connection.get(), context.get(), timeouts.choice, cancellable);
        code = response.code;
    }
    g_dbus_connection_close_sync(connection.get(), nullptr, nullptr);
    return code == 0U;
}

}  // namespace supportsdk
