#include "backends/avahi/AvahiNetServiceFactory.h"

#include <avahi-common/domain.h>

#include "backends/avahi/AvahiNetService.h"

namespace supportsdk {

namespace {

/// The D-Bus library ends the process over anything else.
bool isTextForBus(const std::string& text) {
    try {
        return text.find('\0') == std::string::npos && !Json(text).dump().empty();
    } catch (const Json::exception&) {  // no UTF-8
        return false;
    }
}

}  // namespace

AvahiNetServiceFactory::AvahiNetServiceFactory(std::shared_ptr<MainQueue> mainQueue)
    : mainQueue_(std::move(mainQueue)), withdrawals_(std::make_shared<Withdrawals>()) {}

std::shared_ptr<NetService> AvahiNetServiceFactory::makeService(const std::string& domain,
                                                                const std::string& type,
                                                                const std::string& name,
                                                                std::uint16_t port) {
    if (!isTextForBus(domain) || !isTextForBus(type) || !isTextForBus(name)) return nullptr;
    if (domain.empty() || avahi_is_valid_domain_name(domain.c_str()) == 0) return nullptr;
    if (avahi_is_valid_service_type_strict(type.c_str()) == 0) return nullptr;
    if (!name.empty() && avahi_is_valid_service_name(name.c_str()) == 0) return nullptr;
    return std::make_shared<AvahiNetService>(mainQueue_, withdrawals_,
                                             ServiceRecord{domain, type, name, port, {}});
}

}  // namespace supportsdk
