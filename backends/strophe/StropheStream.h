#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <vector>

#include "backends/strophe/LowDescriptor.h"
#include "backends/strophe/StreamInbox.h"
#include "backends/strophe/StreamThread.h"
#include "supportsdk/platform/Log.h"
#include "supportsdk/platform/Queues.h"
#include "supportsdk/platform/XmppStream.h"

namespace supportsdk {

struct StropheOptions {
    /// Both required.
    std::shared_ptr<MainQueue> mainQueue;
    std::shared_ptr<Log> log;
    /// PEM files trusted beside the system's roots.
    std::vector<std::filesystem::path> extraAuthorities;
    /// Lets streams to loopback addresses go on without TLS where the server offers none.
    bool allowClearTextOnLoopback = false;
};

/// A stream over libstrophe with a thread of its own. Deadlines, orders and reports are kept here,
/// on the main thread, so that nothing that blocks the other thread delays them.
class StropheStream final : public XmppStream {
 public:
    StropheStream(std::shared_ptr<const StropheOptions> options,
                  std::shared_ptr<LowDescriptor> lowDescriptor);
    ~StropheStream() override;

    void connect(const XmppStreamOptions& options, Callbacks callbacks) override;
    void send(std::string xml) override;
    void disconnect() override;
    void abort() override;
    [[nodiscard]] bool isConnecting() const override { return state_ == State::connecting; }
    [[nodiscard]] bool isAuthenticated() const override { return state_ == State::authenticated; }

 private:
    enum class State { idle, connecting, authenticated, closing, over };

    void handle(StreamEvent event);
    void startThread(const XmppStreamOptions& options);
    /// Ends the stream without its thread; the report follows.
    void endWithoutThread(XmppLoss loss, const char* description);
    void end(const XmppStreamEnd& end);
    void report(XmppStreamEnd end);

    const std::shared_ptr<const StropheOptions> options_;
    const std::shared_ptr<LowDescriptor> lowDescriptor_;
    State state_ = State::idle;
    std::shared_ptr<Callbacks> callbacks_;
    std::chrono::steady_clock::time_point started_;
    std::shared_ptr<StreamInbox> inbox_;
    std::unique_ptr<StreamThread> thread_;
    bool ended_ = false;
    Registration deadline_;
    Registration delayedReport_;
};

}  // namespace supportsdk
