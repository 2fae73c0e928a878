#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "tests/support/MessageBus.h"

namespace supportsdk::test {

/// A real Avahi daemon for one test: on a system bus of its own, which this process and its
/// children then take for the system's, and in a network of its own. Its device is called "device".
class MdnsResponder {
 public:
    /// Why there can be none here; "" when there can.
    static std::string obstacle();

    /// Nothing runs yet. One a process: the library behind the bus reads its address only once.
    MdnsResponder();
    MdnsResponder(const MdnsResponder&) = delete;
    MdnsResponder& operator=(const MdnsResponder&) = delete;

    /// These return when it is ready, or false.
    bool startBus() { return bus_.start(); }
    bool startDaemon();
    /// As a crash would end them.
    void stopBus() { bus_.stop(); }
    void stopDaemon() { daemon_.reset(); }
    bool renameDevice(const std::string& name);

 private:
    TemporaryFolder folder_;
    MessageBus bus_{"system"};
    std::unique_ptr<LineProcess> daemon_;
};

struct FoundService {
    std::string name;
    std::string domain;
    std::string host;
    int port = 0;
    std::map<std::string, std::string> txt;
};

/// What another program of this device sees of the services of one type, as it comes and goes.
class ServiceBrowser {
 public:
    explicit ServiceBrowser(const std::string& type)
        : process_({"avahi-browse", "--resolve", "--parsable", type}) {}

    /// The next service of that name that appears; nothing when none did in time.
    std::optional<FoundService> awaitService(const std::string& name);
    /// False when none of that name went in time.
    bool awaitGone(const std::string& name);

 private:
    std::optional<std::vector<std::string>> await(const std::string& event,
                                                  const std::string& name);
    LineProcess process_;
};

}  // namespace supportsdk::test
