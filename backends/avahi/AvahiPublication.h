#pragma once

#include <avahi-client/client.h>
#include <avahi-client/publish.h>
#include <avahi-common/error.h>
#include <avahi-common/simple-watch.h>
#include <avahi-common/strlst.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "supportsdk/platform/Values.h"

namespace supportsdk {

struct ServiceRecord {
    std::string domain;
    std::string type;
    /// "" is the device's own.
    std::string name;
    std::uint16_t port = 0;
    Bytes txt;
};

/// Published under `name`, or not, and why: `code` is one of Avahi's.
struct PublishOutcome {
    bool published = false;
    std::string name;
    int code = AVAHI_OK;
    std::string description;

    bool operator==(const PublishOutcome&) const = default;
};

/// Keeps one service published for as long as run() takes, also when the daemon starts late or
/// again. The thread that runs it waits for bus and daemon.
class AvahiPublication {
 public:
    using Report = std::function<void(const PublishOutcome&)>;

    /// `report` hears the first outcome, and each one that differs from the one before.
    AvahiPublication(ServiceRecord record, Report report);

    /// Returns when the descriptor `stop` becomes readable, or when there is no system bus.
    void run(int stop);

 private:
    struct Free {
        void operator()(AvahiSimplePoll* poll) const { avahi_simple_poll_free(poll); }
        void operator()(AvahiClient* client) const { avahi_client_free(client); }
        void operator()(AvahiStringList* list) const { avahi_string_list_free(list); }
    };
    template <typename T>
    using Owned = std::unique_ptr<T, Free>;
    using Clock = std::chrono::steady_clock;

    bool connect();
    void clientChanged(AvahiClient* client, AvahiClientState state);
    void groupChanged(AvahiEntryGroup* group, AvahiEntryGroupState state);

    /// Names the service and hands it to the daemon, under the next name while one is taken.
    void announce(AvahiClient* client);
    bool chooseName(AvahiClient* client);
    bool takeNextName();
    void withdraw();

    void succeed();
    void fail(int code);
    /// As fail(), where the reason may be told already.
    void lose(int code);
    void report(const PublishOutcome& outcome);
    /// For poll(): until an outcome is overdue; forever once there is one.
    [[nodiscard]] int patience() const;

    const ServiceRecord record_;
    const Report report_;
    Owned<AvahiStringList> txt_;
    Owned<AvahiSimplePoll> poll_;
    Owned<AvahiClient> client_;
    AvahiEntryGroup* group_ = nullptr;  // the client's
    std::string hostName_;
    std::string name_;
    int namesTaken_ = 0;
    bool stopped_ = false;
    bool lost_ = false;
    Clock::time_point overdue_;
    std::optional<PublishOutcome> last_;
};

}  // namespace supportsdk
