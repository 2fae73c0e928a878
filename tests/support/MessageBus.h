#pragma once

#include <memory>
#include <string>

#include "tests/support/LineProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk::test {

/// A D-Bus daemon for this test alone, in a child process.
class MessageBus {
 public:
    /// `type` is "session" or "system". Nothing runs yet.
    explicit MessageBus(const std::string& type)
        : socket_("unix:path=" + (folder_.path / "bus").string()) {
        folder_.write("bus.conf", "<busconfig><type>" + type + "</type><listen>" + socket_ +
                                      "</listen><auth>EXTERNAL</auth><policy context='default'>"
                                      "<allow send_destination='*'/><allow receive_sender='*'/>"
                                      "<allow own='*'/></policy></busconfig>");
    }

    /// Returns when it is ready, or false. Always at the same address.
    bool start() {
        daemon_ = std::make_unique<LineProcess>(std::vector<std::string>{
            "dbus-daemon", "--config-file=" + (folder_.path / "bus.conf").string(), "--nofork",
            "--nopidfile", "--nosyslog", "--print-address=1"});
        return daemon_->awaitLine("unix:path=");
    }
    /// As a crash would.
    void stop() { daemon_.reset(); }

    [[nodiscard]] const std::string& address() const { return socket_; }

 private:
    TemporaryFolder folder_;
    std::string socket_;
    std::unique_ptr<LineProcess> daemon_;
};

}  // namespace supportsdk::test
