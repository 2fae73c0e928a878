#pragma once

#include <functional>
#include <memory>

#include "supportsdk/chat/xmpp/XmppAutoPing.h"
#include "supportsdk/chat/xmpp/XmppPing.h"
#include "supportsdk/platform/XmppStream.h"

namespace supportsdk {

/// One stream with what it needs to live: it answers pings, pings by itself, drops a connection on
/// which nobody answers, and tells requests that nobody takes that they are not served
/// (RFC 6120, 8.2.3). Main thread. Callbacks get the link that calls; while isCalling() it must not
/// be destroyed.
class XmppLink : public std::enable_shared_from_this<XmppLink> {
 public:
    struct Callbacks {
        std::function<void(XmppLink&)> authenticated;
        /// A stanza that is not the link's own business; answers whether it was taken.
        std::function<bool(XmppLink&, const std::shared_ptr<const Stanza>& stanza)> received;
        /// Ended, or never came about; the last callback.
        std::function<void(XmppLink&, const XmppStreamEnd& end)> ended;
    };

    XmppLink(XmppStreamFactory& factory, std::shared_ptr<MainQueue> queue, Callbacks callbacks);

    void connect(const XmppStreamOptions& options);
    void send(std::string xml) { xmppStream_->send(std::move(xml)); }
    void disconnect();
    /// Pings at once, and drops the connection if nobody answers within the usual 10 seconds.
    void checkIsAlive();

    [[nodiscard]] bool isConnecting() const { return xmppStream_->isConnecting(); }
    [[nodiscard]] bool isAuthenticated() const { return xmppStream_->isAuthenticated(); }
    /// Whether it ever was.
    [[nodiscard]] bool wasAuthenticated() const { return wasAuthenticated_; }
    [[nodiscard]] bool isCalling() const { return calls_ > 0; }

 private:
    template <typename Call>
    void calling(Call call) {
        // A callback may run a loop of its own, in which others let go of this link.
        const auto self = shared_from_this();
        ++calls_;
        call();
        --calls_;
    }
    void received(const std::shared_ptr<const Stanza>& stanza);

    const Callbacks callbacks_;
    XmppPing xmppPing_;
    XmppAutoPing xmppAutoPing_;
    bool wasAuthenticated_ = false;
    int calls_ = 0;
    // Last, so that it ends first: it calls into the others.
    std::unique_ptr<XmppStream> xmppStream_;
};

}  // namespace supportsdk
