#include "backends/strophe/StropheStream.h"

#include <utility>

#include "backends/strophe/StreamEnd.h"

namespace supportsdk {

namespace {

using std::chrono::milliseconds;

// No end comes sooner after the start than this, or who reconnects at once would spin.
constexpr milliseconds shortestLife{1000};

// For an orderly end whose thread does not answer.
constexpr milliseconds longestClose{1000};

}  // namespace

StropheStream::StropheStream(std::shared_ptr<const StropheOptions> options,
                             std::shared_ptr<LowDescriptor> lowDescriptor)
    : options_(std::move(options)), lowDescriptor_(std::move(lowDescriptor)) {}

StropheStream::~StropheStream() {
    if (inbox_) inbox_->close();
}

void StropheStream::connect(const XmppStreamOptions& options, Callbacks callbacks) {
    if (state_ != State::idle) return;
    state_ = State::connecting;
    started_ = std::chrono::steady_clock::now();
    callbacks_ = std::make_shared<Callbacks>(std::move(callbacks));
    deadline_ = options_->mainQueue->after(options.connectTimeout, [this] {
        end({XmppLoss::timedOut, "", "The server did not answer in time."});
    });
    startThread(options);
}

void StropheStream::startThread(const XmppStreamOptions& options) {
    // Closed before this object and its thread go.
    inbox_ = std::make_shared<StreamInbox>(
        options_->mainQueue, [this](StreamEvent event) { handle(std::move(event)); },
        [this] { thread_->commands().wake(); });
    thread_ = std::make_unique<StreamThread>(
        StreamThread::Setup{options, options_->extraAuthorities, options_->allowClearTextOnLoopback,
                            lowDescriptor_, inbox_});
    if (!thread_->start()) {
        endWithoutThread(XmppLoss::noDescriptor,
                         "The system has no descriptor or thread for the stream.");
    }
}

void StropheStream::send(std::string xml) {
    if (state_ == State::authenticated) thread_->commands().send(std::move(xml));
}

void StropheStream::disconnect() {
    if (state_ == State::authenticated) {
        state_ = State::closing;
        thread_->commands().disconnect();
        deadline_ = options_->mainQueue->after(longestClose, [this] {
            end({XmppLoss::requested, "", "The stream was closed as asked."});
        });
    } else if (delayedReport_) {
        delayedReport_ = options_->mainQueue->after(milliseconds{0}, [this] {
            report({XmppLoss::requested, "", "The attempt had failed already."});
        });
    } else if (state_ == State::connecting) {
        endWithoutThread(XmppLoss::requested, "The attempt was given up as asked.");
    }
}

void StropheStream::abort() {
    if (state_ == State::idle || state_ == State::over || ended_) return;
    endWithoutThread(XmppLoss::lost, "The connection was given up.");
}

void StropheStream::endWithoutThread(XmppLoss loss, const char* description) {
    thread_->cut();
    state_ = State::over;
    inbox_->add(XmppStreamEnd{loss, "", description});
}

void StropheStream::handle(StreamEvent event) {
    const auto callbacks = callbacks_;
    if (ended_ || !callbacks) return;
    if (const auto* ended = std::get_if<XmppStreamEnd>(&event)) {
        end(*ended);
    } else if (const auto* up = std::get_if<StreamAuthenticated>(&event)) {
        if (state_ != State::connecting) return;
        state_ = State::authenticated;
        deadline_.reset();
        if (callbacks->authenticated) callbacks->authenticated(up->jid);
    } else if (auto* stanza = std::get_if<std::shared_ptr<const Stanza>>(&event)) {
        if (state_ == State::over) return;
        if (callbacks->received) callbacks->received(std::move(*stanza));
    }
}

void StropheStream::end(const XmppStreamEnd& end) {
    if (std::exchange(ended_, true)) return;
    thread_->cut();
    if (state_ != State::connecting) state_ = State::over;
    const auto reportAt = started_ + shortestLife;
    const auto rest = std::chrono::ceil<milliseconds>(reportAt - std::chrono::steady_clock::now());
    if (end.loss == XmppLoss::requested || rest.count() <= 0) return report(end);
    delayedReport_ = options_->mainQueue->after(rest, [this, end] { report(end); });
}

// By value: the callback may end the life of whatever holds the original.
void StropheStream::report(XmppStreamEnd end) {
    state_ = State::over;
    std::string line = std::string("XMPP stream ended, ") + nameOf(end.loss);
    if (!end.condition.empty()) line += " (" + end.condition + ")";
    options_->log->write(line + ": " + end.description);
    const auto callbacks = std::exchange(callbacks_, nullptr);
    // The last thing done here: whoever hears of it may destroy this object.
    if (callbacks->ended) callbacks->ended(end);
}

}  // namespace supportsdk
