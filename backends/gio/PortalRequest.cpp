#include "backends/gio/PortalRequest.h"

#include <memory>
#include <optional>
#include <string_view>

namespace supportsdk {

namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
/// The portal answers at a path that ends with it; one request a connection, so any token will do.
constexpr const char* requestToken = "supportsdk";

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
using Connection = std::unique_ptr<GDBusConnection, Unref>;

struct FreeVariant {
    void operator()(GVariant* value) const { g_variant_unref(value); }
};
using Variant = std::unique_ptr<GVariant, FreeVariant>;

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

/// The address of the session bus, if it runs. Not asked of GLib, which would start a bus.
std::string sessionBusAddress() {
    if (const char* address = g_getenv("DBUS_SESSION_BUS_ADDRESS"); address && *address)
        return std::string_view(address).starts_with("autolaunch:") ? "" : address;
    const std::string socket = std::string(g_get_user_runtime_dir()) + "/bus";
    if (!g_file_test(socket.c_str(), G_FILE_TEST_EXISTS)) return {};
    gchar* escaped = g_dbus_address_escape_value(socket.c_str());
    std::string address = std::string("unix:path=") + escaped;
    g_free(escaped);
    return address;
}

Connection connect(GCancellable* cancellable) {
    const auto address = sessionBusAddress();
    if (address.empty()) return nullptr;
    constexpr auto flags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    Connection connection(g_dbus_connection_new_for_address_sync(address.c_str(), flags, nullptr,
                                                                 cancellable, nullptr));
    // The default would end the host's process together with the bus.
    if (connection) g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
    return connection;
}

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
    GSource* cancelled = g_cancellable_source_new(cancellable);
    g_source_set_dummy_callback(cancelled);
    g_source_attach(cancelled, context);
    const auto closed = g_signal_connect(
        connection, "closed", G_CALLBACK(+[](GDBusConnection*, gboolean, GError*, gpointer loop) {
            g_main_context_wakeup(static_cast<GMainContext*>(loop));
        }),
        context);

    while (!response.code && !timeUp && !g_cancellable_is_cancelled(cancellable) &&
           !g_dbus_connection_is_closed(connection))
        g_main_context_iteration(context, TRUE);

    g_signal_handler_disconnect(connection, closed);
    for (GSource* source : {timer, cancelled}) {
        g_source_destroy(source);
        g_source_unref(source);
    }
}

}  // namespace

bool openThroughPortal(const std::string& url, const PortalTimeouts& timeouts,
                       GCancellable* cancellable) {
    if (!g_utf8_validate(url.data(), static_cast<gssize>(url.size()), nullptr)) return false;
    const ThreadContext context;
    const auto connection = connect(cancellable);
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
