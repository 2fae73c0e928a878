#pragma once

#include <pthread.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "backends/strophe/CommandQueue.h"
#include "backends/strophe/LowDescriptor.h"
#include "backends/strophe/SocketGuard.h"
#include "backends/strophe/StreamInbox.h"
#include "backends/strophe/StropheConnection.h"
#include "supportsdk/platform/XmppStream.h"

namespace supportsdk {

/// The thread of one stream: looks the host up, connects, and then sleeps until the socket or the
/// main thread has something. Made and destroyed on the main thread; the commands any thread.
class StreamThread {
 public:
    struct Setup {
        XmppStreamOptions options;
        std::vector<std::filesystem::path> authorities;
        bool allowClearTextOnLoopback = false;
        std::shared_ptr<LowDescriptor> lowDescriptor;
        std::shared_ptr<StreamInbox> inbox;
    };

    explicit StreamThread(Setup setup);
    /// Cuts the connection and waits for the thread, which is then done at once.
    ~StreamThread();
    StreamThread(const StreamThread&) = delete;
    StreamThread& operator=(const StreamThread&) = delete;

    /// False when the system gives no thread.
    [[nodiscard]] bool start();

    CommandQueue& commands() { return commands_; }
    /// Ends whatever it is doing, connect included; reports nothing more.
    void cut();

 private:
    static void* enter(void* self);
    void run();
    [[nodiscard]] std::optional<XmppStreamEnd> attempt();
    [[nodiscard]] std::vector<PeerAddress> resolve();
    [[nodiscard]] StreamFacts stream(const PeerAddress& address, const std::string& authorities);
    void drive(StropheConnection& connection);
    void advance(StropheConnection& connection, int socketEvents);
    void execute(StropheConnection& connection);
    [[nodiscard]] int pollTimeout() const;
    [[nodiscard]] bool isTimeUp() const;

    Setup setup_;
    CommandQueue commands_;
    SocketGuard guard_;
    std::optional<pthread_t> thread_;
    // Of the thread itself, while it drives a connection:
    /// What the last steps have brought and the inbox does not have yet.
    std::vector<StreamEvent> batch_;
    std::size_t batchBytes_ = 0;
    bool authenticated_ = false;
    int quietRounds_ = 0;
    std::size_t pendingWrites_ = 0;
    /// While connecting, where there is another address to try; while closing, always.
    std::optional<std::chrono::steady_clock::time_point> giveUpAt_;
    bool closing_ = false;
};

}  // namespace supportsdk
