#include "backends/gio/PortalRequest.h"

#include <functional>
#include <optional>
#include <utility>

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
    Variant results;

 private:
    static void receive(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                        GVariant* parameters, gpointer self) {
        if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ua{sv})"))) return;
        guint32 code = 0;
        g_variant_get_child(parameters, 0, "u", &code);
        auto& response = *static_cast<Response*>(self);
        response.code = code;
        response.results.reset(g_variant_get_child_value(parameters, 1));
    }

    GDBusConnection* connection_;
    guint subscription_;
};

struct PortalQuestion {
    const char* interface;
    const char* method;
    /// The arguments, of which the options come last; called once, with those that every request
    /// has.
    std::function<GVariant*(GVariantBuilder& options)> arguments;
};

bool call(GDBusConnection* connection, const PortalQuestion& question,
          std::chrono::milliseconds limit, GCancellable* cancellable) {
    GVariantBuilder options;
    g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&options, "{sv}", "handle_token", g_variant_new_string(requestToken));
    const Variant reply(g_dbus_connection_call_sync(
        connection, portalName, portalPath, question.interface, question.method,
        question.arguments(options), G_VARIANT_TYPE("(o)"), G_DBUS_CALL_FLAGS_NONE,
        static_cast<gint>(limit.count()), cancellable, nullptr));
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

struct PortalAnswer {
    bool isTaken = false;
    std::optional<guint32> code;
    Variant results;
};

PortalAnswer ask(const PortalQuestion& question, const PortalTimeouts& timeouts,
                 GCancellable* cancellable) {
    PortalAnswer answer;
    const ThreadContext context;
    const auto connection = connectToSessionBus(cancellable);
    if (!connection) return answer;
    {
        Response response(connection.get(), requestPath(connection.get()));
        answer.isTaken = call(connection.get(), question, timeouts.call, cancellable);
        if (answer.isTaken)
            waitFor(response, connection.get(), context.get(), timeouts.choice, cancellable);
        answer.code = response.code;
        answer.results = std::move(response.results);
    }
    g_dbus_connection_close_sync(connection.get(), nullptr, nullptr);
    return answer;
}

/// "a(sa(us))": names and, under each, types; 1 says that a type is a MIME type.
GVariant* pictureFilters() {
    GVariantBuilder types;
    g_variant_builder_init(&types, G_VARIANT_TYPE("a(us)"));
    for (const auto* type : {"image/png", "image/jpeg", "image/gif", "image/bmp", "image/webp"})
        g_variant_builder_add(&types, "(us)", guint32{1}, type);
    GVariantBuilder filters;
    g_variant_builder_init(&filters, G_VARIANT_TYPE("a(sa(us))"));
    g_variant_builder_add(&filters, "(sa(us))", "PNG, JPEG, GIF, BMP, WebP", &types);
    return g_variant_builder_end(&filters);
}

}  // namespace

bool openThroughPortal(const std::string& url, const PortalTimeouts& timeouts,
                       GCancellable* cancellable) {
    if (!g_utf8_validate(url.data(), static_cast<gssize>(url.size()), nullptr)) return false;
    const auto arguments = [&](GVariantBuilder& options) {
        return g_variant_new("(ssa{sv})", "", url.c_str(), &options);
    };
    const auto answer =
        ask({"org.freedesktop.portal.OpenURI", "OpenURI", arguments}, timeouts, cancellable);
    return answer.code == 0U;
}

PortalChoice choosePicturesThroughPortal(const std::string& title, const PortalTimeouts& timeouts,
                                         GCancellable* cancellable) {
    const auto arguments = [&](GVariantBuilder& options) {
        g_variant_builder_add(&options, "{sv}", "multiple", g_variant_new_boolean(TRUE));
        g_variant_builder_add(&options, "{sv}", "filters", pictureFilters());
        return g_variant_new("(ssa{sv})", "", title.c_str(), &options);
    };
    const auto answer =
        ask({"org.freedesktop.portal.FileChooser", "OpenFile", arguments}, timeouts, cancellable);
    PortalChoice choice{answer.isTaken, {}};
    if (answer.code != 0U || !answer.results) return choice;
    const Variant uris(
        g_variant_lookup_value(answer.results.get(), "uris", G_VARIANT_TYPE_STRING_ARRAY));
    for (gsize at = 0; uris && at < g_variant_n_children(uris.get()); ++at) {
        const gchar* uri = nullptr;
        g_variant_get_child(uris.get(), at, "&s", &uri);
        choice.uris.emplace_back(uri);
    }
    return choice;
}

}  // namespace supportsdk
