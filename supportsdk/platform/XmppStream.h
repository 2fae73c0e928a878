#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace supportsdk {

class Stanza;

struct XmppStreamOptions {
    /// Where to connect; the domain of `jid` when empty. No SRV look-up.
    std::string host;
    /// 0 means 5222.
    std::uint16_t port = 0;
    /// Account, with or without a resource. The certificate must be valid for its domain.
    std::string jid;
    std::string password;
    /// From connect() to the end of authentication; an attempt that takes longer is lost as
    /// timedOut.
    std::chrono::milliseconds connectTimeout = std::chrono::seconds{30};
};

/// Why a stream ended or could not be had.
enum class XmppLoss {
    requested,       // disconnect() was called
    refused,         // nothing listens there, or the network says no
    unresolved,      // the host name has no address
    timedOut,        // connectTimeout has passed
    certificate,     // TLS is missing, or the certificate is not trusted or is for another domain
    credentials,     // the server refused the account
    closedByServer,  // stream error; the condition tells which (RFC 6120, 4.9.3)
    noDescriptor,    // the process has too many open files for the stream to work safely
    lost             // anything else, after the stream was up
};

struct XmppStreamEnd {
    XmppLoss loss = XmppLoss::lost;
    /// The stream error's condition, such as "conflict"; "" when there was none.
    std::string condition;
    /// In words for a person.
    std::string description;
};

/// A client's stream (RFC 6120): connect, TLS, authenticate, bind, then stanzas both ways. It knows
/// nothing of rooms or pings. One object serves one attempt and one stream.
///
/// Used on the main thread; all callbacks come on the main thread, never inside a call, and none
/// after the object is destroyed. Destroying it ends the stream at once.
class XmppStream {
 public:
    struct Callbacks {
        /// Connected, authenticated and bound to `jid`.
        std::function<void(const std::string& jid)> authenticated;
        /// One stanza from the server.
        std::function<void(std::shared_ptr<const Stanza> stanza)> received;
        /// Ended, or never came about. Runs once, as the last callback, and for an attempt that
        /// fails at once no sooner than one second after connect(), so that who reconnects at once
        /// does not spin.
        std::function<void(const XmppStreamEnd& end)> ended;
    };

    virtual ~XmppStream() = default;

    /// Starts the attempt. Called once.
    virtual void connect(const XmppStreamOptions& options, Callbacks callbacks) = 0;

    /// Queues one element for sending; dropped unless authenticated. `xml` must be a whole element,
    /// and free of characters that XML 1.0 forbids.
    virtual void send(std::string xml) = 0;

    /// Sends what is queued, closes the stream in order, and ends with `requested`, without waiting
    /// long for the server.
    virtual void disconnect() = 0;

    /// Drops the connection at once, as if the network had failed; ends with `lost`. For those who
    /// notice before the system does that nobody is there any more.
    virtual void abort() = 0;

    [[nodiscard]] virtual bool isConnecting() const = 0;
    [[nodiscard]] virtual bool isAuthenticated() const = 0;
};

class XmppStreamFactory {
 public:
    virtual ~XmppStreamFactory() = default;

    /// A fresh stream; never null. Main thread.
    [[nodiscard]] virtual std::unique_ptr<XmppStream> makeStream() = 0;
};

}  // namespace supportsdk
