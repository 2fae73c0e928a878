#pragma once

#include <gio/gio.h>

#include <functional>
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
    FakePortal(const std::string& address, Manner manner, Asked asked = {});
    ~FakePortal();
    /// What a person chooses when asked for files.
    void setChosen(std::vector<std::string> uris);
    /// Tells all who watch that a setting has this value now; "color-scheme" can be read, too.
    void set(const std::string& key, GVariant* value);
    FakePortal(const FakePortal&) = delete;
    FakePortal& operator=(const FakePortal&) = delete;

 private:
    static void call(GDBusConnection* connection, const gchar* sender, const gchar* path,
                     const gchar* interface, const gchar* method, GVariant* parameters,
                     GDBusMethodInvocation* invocation, gpointer self);
    void answerRequest(GDBusConnection* connection, const std::string& sender, GVariant* parameters,
                       GDBusMethodInvocation* invocation);
    GVariant* results();
    void read(const std::string& method, GDBusMethodInvocation* invocation);

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
