#pragma once

#include <unistd.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>

#include "tests/support/MessageBus.h"

namespace supportsdk::test {

/// A real Avahi daemon for one test: on a system bus of its own, which this process and its
/// children then take for the system's, and in a network of its own. Its device is called "device".
class MdnsResponder {
 public:
    /// Why there can be none here; "" when there can.
    static std::string obstacle() {
        if (geteuid() != 0) return "a network namespace needs root";
        if (LineProcess({"unshare", "-nm", "true"}).waitForEnd() != 0) return "no namespaces here";
        if (LineProcess({"avahi-daemon", "--version"}).waitForEnd() != 0) return "no avahi-daemon";
        return {};
    }

    /// Nothing runs yet. One a process: the library behind the bus reads its address only once.
    MdnsResponder() {
        folder_.write("avahi.conf", "[server]\nhost-name=device\nuse-ipv6=no\n");
        setenv("DBUS_SYSTEM_BUS_ADDRESS", bus_.address().c_str(), 1);
    }
    MdnsResponder(const MdnsResponder&) = delete;
    MdnsResponder& operator=(const MdnsResponder&) = delete;

    /// These return when it is ready, or false.
    bool startBus() { return bus_.start(); }
    bool startDaemon() {
        daemon_ = std::make_unique<LineProcess>(std::vector<std::string>{
            "unshare", "-nm", "sh", "-c",
            enterOwnNetwork +
                std::string("exec avahi-daemon --no-drop-root --no-chroot --no-rlimits -f ") +
                (folder_.path / "avahi.conf").string()});
        return daemon_->awaitLine("Server startup complete");
    }
    /// As a crash would end them.
    void stopBus() { bus_.stop(); }
    void stopDaemon() { daemon_.reset(); }
    static bool renameDevice(const std::string& name) {
        return LineProcess({"avahi-set-host-name", name}).waitForEnd() == 0;
    }

 private:
    /// The daemon insists on one place for the number of its process, and two may run at once.
    static constexpr const char* enterOwnNetwork =
        "mount -t tmpfs none /run && mkdir /run/avahi-daemon && ip link set lo up && "
        "ip link add near type veth peer name far && ip addr add 10.9.0.1/24 dev near && "
        "ip link set far up && ip link set near up && ";

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
    std::optional<FoundService> awaitService(const std::string& name) {
        // Event, interface, protocol, name, type, domain, host, address, port, "key=value" ...
        const auto fields = await("=", name);
        if (!fields || fields->size() < 9) return std::nullopt;
        FoundService found{name, fields->at(5), fields->at(6), std::stoi(fields->at(8)), {}};
        std::string items;
        for (auto at = 9U; at < fields->size(); ++at) items += fields->at(at) + ";";
        // Each in quotes, which values have none of.
        std::istringstream quoted(items);
        for (std::string item;
             std::getline(quoted, item, '"') && std::getline(quoted, item, '"');) {
            const auto equals = item.find('=');
            if (equals != std::string::npos)
                found.txt[item.substr(0, equals)] = item.substr(equals + 1);
        }
        return found;
    }
    /// False when none of that name went in time.
    bool awaitGone(const std::string& name) { return await("-", name).has_value(); }

 private:
    std::optional<std::vector<std::string>> await(const std::string& event,
                                                  const std::string& name) {
        while (const auto line = process_.readLine()) {
            std::vector<std::string> fields;
            std::istringstream pieces(*line);
            for (std::string field; std::getline(pieces, field, ';');) fields.push_back(field);
            if (fields.size() > 5 && fields[0] == event && unescaped(fields[3]) == name)
                return fields;
        }
        return std::nullopt;
    }
    /// "\032" is the character with that decimal number.
    static std::string unescaped(const std::string& text) {
        std::string plain;
        for (std::size_t at = 0; at < text.size(); ++at) {
            if (text[at] == '\\' && at + 3 < text.size() && std::isdigit(text[at + 1]) != 0) {
                plain += static_cast<char>(std::stoi(text.substr(at + 1, 3)));
                at += 3;
            } else if (text[at] != '\\') {
                plain += text[at];
            }
        }
        return plain;
    }
    LineProcess process_;
};

}  // namespace supportsdk::test
