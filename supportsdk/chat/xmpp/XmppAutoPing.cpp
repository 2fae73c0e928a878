#include "supportsdk/chat/xmpp/XmppAutoPing.h"

#include <utility>

#include "supportsdk/chat/xmpp/Stanzas.h"

namespace supportsdk {

XmppAutoPing::XmppAutoPing(std::shared_ptr<MainQueue> queue, Callbacks callbacks)
    : queue_(std::move(queue)), callbacks_(std::move(callbacks)) {}

void XmppAutoPing::start() {
    nextPing_ = queue_->after(interval_, [this] {
        start();
        pingNow();
    });
}

void XmppAutoPing::stop() {
    nextPing_.reset();
    deadline_.reset();
    pendingId_.clear();
}

bool XmppAutoPing::receive(const Stanza& stanza) {
    if (pendingId_.empty() || stanza.name() != "iq" || stanza.attribute("id") != pendingId_)
        return false;
    const auto type = stanza.attribute("type");
    if (type != "result" && type != "error") return false;
    pendingId_.clear();
    deadline_.reset();
    return true;
}

void XmppAutoPing::pingNow() {
    if (!pendingId_.empty()) return;
    pendingId_ = generateUUID();
    const auto iq = makeIq("get", pendingId_);
    setAttribute(appendElement(iq->root(), "ping"), "xmlns", xmlns::ping);
    deadline_ = queue_->after(timeout_, [this] {
        stop();
        const auto timedOut = callbacks_.timedOut;
        timedOut();
    });
    callbacks_.send(iq->xml());
}

}  // namespace supportsdk
