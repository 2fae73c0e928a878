#include "backends/avahi/AvahiNetService.h"

#include <avahi-common/error.h>

namespace supportsdk {

namespace {

constexpr std::size_t longestRecord = 65'535;

/// Avahi takes more, but does not send what is longer than a packet of the link (RFC 6763, 6.2).
constexpr std::size_t longestPublished = 1'300;

/// Whether it is a row of strings, each behind its length, that ends with the last one.
bool isTxtRecord(const Bytes& data) {
    std::size_t at = 0;
    while (at < data.size()) at += 1 + std::to_integer<std::size_t>(data[at]);
    return at == data.size() && at <= longestRecord;
}

}  // namespace

AvahiNetService::AvahiNetService(std::weak_ptr<MainQueue> mainQueue,
                                 std::shared_ptr<Withdrawals> withdrawals, ServiceRecord record)
    : mainQueue_(std::move(mainQueue)),
      withdrawals_(std::move(withdrawals)),
      record_(std::move(record)) {}

void AvahiNetService::setDelegate(std::weak_ptr<NetServiceDelegate> delegate) {
    delegate_ = std::move(delegate);
}

bool AvahiNetService::setTXTRecordData(Bytes data) {
    if (!isTxtRecord(data)) return false;
    record_.txt = std::move(data);
    return true;
}

void AvahiNetService::publish() {
    if (published_) return;
    published_ = true;
    // Weak, so that neither the service nor the host's loop lives on in a thread that hangs.
    const auto report = [weakQueue = mainQueue_, weak = weak_from_this()](PublishOutcome outcome) {
        const auto queue = weakQueue.lock();
        if (!queue) return;
        queue->post([weak, outcome = std::move(outcome)] {
            if (const auto self = weak.lock()) self->take(outcome);
        });
    };
    if (record_.txt.size() > longestPublished) {
        report({false, record_.name, AVAHI_ERR_INVALID_RECORD,
                "The TXT record is longer than 1300 bytes"});
        return;
    }
    publisher_ = AvahiPublisher::start(record_, report, withdrawals_);
    if (!publisher_) report({false, record_.name, AVAHI_ERR_OS, avahi_strerror(AVAHI_ERR_OS)});
}

void AvahiNetService::take(const PublishOutcome& outcome) {
    if (outcome.published) record_.name = outcome.name;
    const auto delegate = delegate_.lock();
    if (!delegate) return;
    if (outcome.published) {
        delegate->netServiceDidPublish(*this);
    } else {
        delegate->netServiceDidNotPublish(
            *this, {{"code", outcome.code}, {"description", outcome.description}});
    }
}

}  // namespace supportsdk
