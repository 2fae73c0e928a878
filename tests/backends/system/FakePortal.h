#pragma once

#include <gio/gio.h>

#include <algorithm>
#include <functional>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace supportsdk::test {

/// A desktop portal on a session bus, on a thread of its own.
class FakePortal {
 public:
    enum class Manner {
        opens,
        answersEarly,
        personCancels,
        refuses,
        staysSilent,
        foreignAnswer,
        /// Knows the first version of the settings only.
        oldSettings
    };

    using Asked = std::function<void(const std::string& url)>;

    /// `asked` runs on the portal's thread with each address that it is asked to open, and each
    /// title that it is asked to choose files under.
    FakePortal(const std::string& address, Manner manner, Asked asked = {})
        : manner_(manner), asked_(std::move(asked)) {
        std::promise<void> ready;
        thread_ = std::thread([this, address, &ready] {
            g_main_context_push_thread_default(context_);
            auto* node = connect(address);
            ready.set_value();
            g_main_loop_run(loop_);
            g_dbus_connection_close_sync(connection_, nullptr, nullptr);
            g_object_unref(connection_);
            g_dbus_node_info_unref(node);
            g_main_context_pop_thread_default(context_);
        });
        ready.get_future().wait();
    }
    ~FakePortal() {
        // Through the context: quitting a loop that does not run yet would be lost.
        g_main_context_invoke(
            context_,
            [](gpointer loop) -> gboolean {
                g_main_loop_quit(static_cast<GMainLoop*>(loop));
                return G_SOURCE_REMOVE;
            },
            loop_);
        thread_.join();
        g_main_loop_unref(loop_);
        g_main_context_unref(context_);
        g_variant_unref(colorScheme_);
    }
    /// What a person chooses when asked for files.
    void setChosen(std::vector<std::string> uris) {
        const std::lock_guard lock(mutex_);
        uris_ = std::move(uris);
    }
    /// Tells all who watch that a setting has this value now; "color-scheme" can be read, too.
    void set(const std::string& key, GVariant* value) {
        const std::lock_guard lock(mutex_);
        g_variant_ref_sink(value);
        g_dbus_connection_emit_signal(
            connection_, nullptr, "/org/freedesktop/portal/desktop",
            "org.freedesktop.portal.Settings", "SettingChanged",
            g_variant_new("(ssv)", "org.freedesktop.appearance", key.c_str(), value), nullptr);
        if (key == "color-scheme") std::swap(value, colorScheme_);
        g_variant_unref(value);
    }
    FakePortal(const FakePortal&) = delete;
    FakePortal& operator=(const FakePortal&) = delete;

 private:
    static constexpr const char* portalInterface = R"(<node>
  <interface name="org.freedesktop.portal.OpenURI">
    <method name="OpenURI">
      <arg type="s" direction="in"/><arg type="s" direction="in"/>
      <arg type="a{sv}" direction="in"/><arg type="o" direction="out"/>
    </method>
  </interface>
  <interface name="org.freedesktop.portal.FileChooser">
    <method name="OpenFile">
      <arg type="s" direction="in"/><arg type="s" direction="in"/>
      <arg type="a{sv}" direction="in"/><arg type="o" direction="out"/>
    </method>
  </interface>
  <interface name="org.freedesktop.portal.Settings">
    <method name="Read">
      <arg type="s" direction="in"/><arg type="s" direction="in"/>
      <arg type="v" direction="out"/>
    </method>
    <method name="ReadOne">
      <arg type="s" direction="in"/><arg type="s" direction="in"/>
      <arg type="v" direction="out"/>
    </method>
  </interface>
</node>)";

    GDBusNodeInfo* connect(const std::string& address) {
        constexpr auto flags =
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
        connection_ = g_dbus_connection_new_for_address_sync(address.c_str(), flags, nullptr,
                                                             nullptr, nullptr);
        g_dbus_connection_set_exit_on_close(connection_, FALSE);
        static const GDBusInterfaceVTable calls = {&FakePortal::call, nullptr, nullptr, {}};
        auto* node = g_dbus_node_info_new_for_xml(portalInterface, nullptr);
        for (auto** each = node->interfaces; *each; ++each)
            g_dbus_connection_register_object(connection_, "/org/freedesktop/portal/desktop", *each,
                                              &calls, this, nullptr, nullptr);
        auto* owned = g_dbus_connection_call_sync(
            connection_, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
            "RequestName", g_variant_new("(su)", "org.freedesktop.portal.Desktop", 0), nullptr,
            G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
        g_variant_unref(owned);
        return node;
    }
    static void call(GDBusConnection* connection, const gchar* sender, const gchar*, const gchar*,
                     const gchar* method, GVariant* parameters, GDBusMethodInvocation* invocation,
                     gpointer self) {
        auto* portal = static_cast<FakePortal*>(self);
        if (method == std::string("OpenURI") || method == std::string("OpenFile")) {
            portal->answerRequest(connection, sender, parameters, invocation);
        } else {
            portal->read(method, invocation);
        }
    }
    void answerRequest(GDBusConnection* connection, const std::string& sender, GVariant* parameters,
                       GDBusMethodInvocation* invocation) {
        const gchar* url = nullptr;
        g_variant_get_child(parameters, 1, "&s", &url);
        if (asked_) asked_(url);
        if (manner_ == Manner::refuses) {
            g_dbus_method_invocation_return_dbus_error(
                invocation, "org.freedesktop.portal.Error.NotAllowed", "no");
            return;
        }
        auto* options = g_variant_get_child_value(parameters, 2);
        const gchar* token = "";
        g_variant_lookup(options, "handle_token", "&s", &token);
        auto peer = sender.substr(1);
        std::replace(peer.begin(), peer.end(), '.', '_');
        const auto path = "/org/freedesktop/portal/desktop/request/" + peer + "/" + token;
        g_variant_unref(options);

        const auto respond = [&](const std::string& at, guint32 code) {
            g_dbus_connection_emit_signal(connection, sender.c_str(), at.c_str(),
                                          "org.freedesktop.portal.Request", "Response",
                                          g_variant_new("(u@a{sv})", code, results()), nullptr);
        };
        if (manner_ == Manner::answersEarly) respond(path, 0);
        g_dbus_method_invocation_return_value(invocation, g_variant_new("(o)", path.c_str()));
        if (manner_ == Manner::opens) respond(path, 0);
        if (manner_ == Manner::personCancels) respond(path, 1);
        if (manner_ == Manner::foreignAnswer) respond(path + "x", 0);
    }
    GVariant* results() {
        GVariantBuilder builder;
        g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
        const std::lock_guard lock(mutex_);
        std::vector<const gchar*> addresses;
        for (const auto& uri : uris_) addresses.push_back(uri.c_str());
        if (!uris_.empty()) {
            g_variant_builder_add(
                &builder, "{sv}", "uris",
                g_variant_new_strv(addresses.data(), static_cast<gssize>(addresses.size())));
        }
        return g_variant_builder_end(&builder);
    }
    void read(const std::string& method, GDBusMethodInvocation* invocation) {
        const std::lock_guard lock(mutex_);
        if (method == "Read") {
            g_dbus_method_invocation_return_value(
                invocation, g_variant_new("(v)", g_variant_new_variant(colorScheme_)));
        } else if (manner_ != Manner::oldSettings) {
            g_dbus_method_invocation_return_value(invocation, g_variant_new("(v)", colorScheme_));
        } else {
            g_dbus_method_invocation_return_dbus_error(
                invocation, "org.freedesktop.DBus.Error.UnknownMethod", "no");
        }
    }

    const Manner manner_;
    const Asked asked_;
    GMainContext* context_ = g_main_context_new();
    GMainLoop* loop_ = g_main_loop_new(context_, FALSE);
    GDBusConnection* connection_ = nullptr;
    std::mutex mutex_;
    std::vector<std::string> uris_;
    GVariant* colorScheme_ = g_variant_ref_sink(g_variant_new_uint32(0));
    std::thread thread_;
};

}  // namespace supportsdk::test
