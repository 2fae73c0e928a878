#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "supportsdk/platform/Values.h"

namespace supportsdk {

class NetService;

/// What becomes of a service that was published. Main thread, never inside the call.
class NetServiceDelegate {
 public:
    virtual ~NetServiceDelegate() = default;

    /// The record is on the network, under the name that service.name() now says. Again when it is
    /// back, or has a new name.
    virtual void netServiceDidPublish(NetService& service) { (void)service; }
    /// It is not, or not any more; it may still come, once the system can publish it. `errors` is
    /// an object with "code" (a number of the system's responder) and "description" (English
    /// words).
    virtual void netServiceDidNotPublish(NetService& service, const Json& errors) {
        (void)service, (void)errors;
    }
};

/// One service record for the local network (DNS-SD, RFC 6763, over mDNS, RFC 6762). It stays
/// published until this object goes, which does not wait for the network. Main thread.
class NetService {
 public:
    virtual ~NetService() = default;

    /// Also over links between devices, where the system tells them apart.
    virtual void setIncludesPeerToPeer(bool includes) = 0;
    virtual void setDelegate(std::weak_ptr<NetServiceDelegate> delegate) = 0;
    /// The TXT record's data (RFC 6763, section 6), before publish(). False, and the former stays,
    /// when it is not made of whole strings or longer than a record can be.
    virtual bool setTXTRecordData(Bytes data) = 0;
    /// Ends in one of the delegate's operations, also where the system has no responder. A name
    /// that is taken is changed, within reason. A second call does nothing.
    virtual void publish() = 0;

    /// The instance's name: the one asked for, after publishing the one in use.
    [[nodiscard]] virtual std::string name() const = 0;
    [[nodiscard]] virtual std::string type() const = 0;
    [[nodiscard]] virtual std::string domain() const = 0;
    [[nodiscard]] virtual std::uint16_t port() const = 0;
};

class NetServiceFactory {
 public:
    virtual ~NetServiceFactory() = default;

    /// A service that is not published yet. `name` may be empty, which means the device's own;
    /// `type` as "_connect._tcp", `domain` as "local." or "local". Null when these cannot be used.
    [[nodiscard]] virtual std::shared_ptr<NetService> makeService(const std::string& domain,
                                                                  const std::string& type,
                                                                  const std::string& name,
                                                                  std::uint16_t port) = 0;
};

}  // namespace supportsdk
