#include "supportsdk/chat/xmpp/XmppLink.h"

#include <utility>

#include "supportsdk/chat/xmpp/Stanzas.h"

namespace supportsdk {

XmppLink::XmppLink(XmppStreamFactory& factory, std::shared_ptr<MainQueue> queue,
                   Callbacks callbacks)
    : callbacks_(std::move(callbacks)),
      xmppPing_([this](std::string xml) { send(std::move(xml)); }),
      xmppAutoPing_(std::move(queue), {[this](std::string xml) { send(std::move(xml)); },
                                       [this] { xmppStream_->abort(); }}),
      xmppStream_(factory.makeStream()) {
    xmppPing_.setRespondsToQueries(true);
    xmppAutoPing_.setPingInterval(std::chrono::seconds{120});
    xmppAutoPing_.setPingTimeout(std::chrono::seconds{10});
}

void XmppLink::connect(const XmppStreamOptions& options) {
    XmppStream::Callbacks callbacks;
    callbacks.authenticated = [this](const std::string&) {
        wasAuthenticated_ = true;
        xmppAutoPing_.start();
        calling([this] { callbacks_.authenticated(*this); });
    };
    callbacks.received = [this](const auto& stanza) { calling([&] { received(stanza); }); };
    callbacks.ended = [this](const XmppStreamEnd& end) {
        xmppAutoPing_.stop();
        calling([&] { callbacks_.ended(*this, end); });
    };
    xmppStream_->connect(options, std::move(callbacks));
}

void XmppLink::disconnect() {
    xmppAutoPing_.stop();
    xmppStream_->disconnect();
}

void XmppLink::checkIsAlive() {
    if (isAuthenticated()) xmppAutoPing_.pingNow();
}

void XmppLink::received(const std::shared_ptr<const Stanza>& stanza) {
    if (xmppAutoPing_.receive(*stanza) || xmppPing_.receive(*stanza)) return;
    if (callbacks_.received(*this, stanza)) return;
    const auto type = stanza->attribute("type");
    if (stanza->name() == "iq" && (type == "get" || type == "set"))
        send(makeError(*stanza, "service-unavailable")->xml());
}

}  // namespace supportsdk
