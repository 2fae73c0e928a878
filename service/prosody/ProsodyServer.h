#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "service/prosody/CertificateAuthority.h"
#include "service/prosody/ChildProcess.h"
#include "service/prosody/ProsodyControl.h"

namespace supportsdk::service {

struct ProsodyOptions {
    /// Everything that the server writes goes here: its configuration, log and accounts. Created
    /// when missing.
    std::filesystem::path folder;
    /// Accounts are USER@domain, rooms NAME@rooms.domain.
    std::string domain = "support.test";
    /// Shown to clients, who then must encrypt. Without it the server offers no TLS at all.
    std::optional<CertificateFiles> certificate = std::nullopt;
    /// 0 lets the system choose.
    std::uint16_t c2sPort = 0;
    std::uint16_t httpPort = 0;
};

/// A Prosody XMPP server as a child process on 127.0.0.1, with a component for rooms: anybody may
/// make a room, nothing is locked, 50 lines of history, real JIDs in sight. Accounts survive a
/// restart, rooms do not. Browsers may use ws://127.0.0.1:HTTPPORT/xmpp-websocket. It ends with
/// this process, even when that is killed. One thread at a time; `control()` any.
class ProsodyServer {
 public:
    explicit ProsodyServer(ProsodyOptions options);
    /// Kills the server if it runs.
    ~ProsodyServer();
    ProsodyServer(const ProsodyServer&) = delete;
    ProsodyServer& operator=(const ProsodyServer&) = delete;

    /// Starts the server and returns when it accepts connections (about 0.1 s), on the ports of the
    /// first start if this is another one. False when it did not come up within `limit`; the folder
    /// then holds prosody.log.
    [[nodiscard]] bool start(std::chrono::milliseconds limit = std::chrono::seconds{10});

    /// In order: clients get the stream error system-shutdown. Falls back on kill() after `limit`.
    void stop(std::chrono::milliseconds limit = std::chrono::seconds{5});

    /// SIGKILL: nobody is told.
    void kill();

    [[nodiscard]] bool isRunning() const { return child_ && child_->isRunning(); }
    /// For signals of one's own, such as SIGSTOP. -1 when not running.
    [[nodiscard]] pid_t processId() const;

    /// Chosen when 0 was asked for; valid after start().
    [[nodiscard]] std::uint16_t c2sPort() const { return c2sPort_; }
    [[nodiscard]] std::uint16_t httpPort() const { return httpPort_; }
    [[nodiscard]] const std::string& domain() const { return options_.domain; }
    [[nodiscard]] std::string roomsDomain() const { return "rooms." + options_.domain; }
    [[nodiscard]] std::string jid(const std::string& user) const {
        return user + "@" + options_.domain;
    }
    [[nodiscard]] std::string room(const std::string& name) const {
        return name + "@" + roomsDomain();
    }

    /// Creates USER@domain, or sets its password.
    [[nodiscard]] bool registerAccount(const std::string& user, const std::string& password);

    /// Steers the running server; stays good over a restart.
    [[nodiscard]] ProsodyControl control() const;

 private:
    [[nodiscard]] bool prepareFolder() const;
    [[nodiscard]] std::string configuration() const;
    [[nodiscard]] bool awaitPorts(int fifo, std::chrono::milliseconds limit);

    ProsodyOptions options_;
    std::uint16_t c2sPort_;
    std::uint16_t httpPort_;
    /// Keeps other programs of this machine from steering the server.
    std::string token_;
    std::unique_ptr<ChildProcess> child_;
};

}  // namespace supportsdk::service
