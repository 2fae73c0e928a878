#include <algorithm>
#include <string_view>

#include "supportsdk/core/Fields.h"
#include "supportsdk/core/TxtRecord.h"
#include "supportsdk/launcher/SupportButton.h"

namespace supportsdk {

namespace {

using Pairs = std::map<std::string, Bytes>;

constexpr const char* privateKey = "private";

/// RFC 6763, section 6.4: the case of a key does not matter.
bool isSameKey(std::string_view one, std::string_view other) {
    const auto lower = [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character + 32) : character;
    };
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [lower](char a, char b) { return lower(a) == lower(b); });
}

void removeKey(Pairs& pairs, std::string_view key) {
    std::erase_if(pairs, [key](const auto& pair) { return isSameKey(pair.first, key); });
}

/// A text as it is, anything else as compact JSON, whose keys are sorted.
std::string description(const Json& value) {
    const auto* text = value.get_ptr<const Json::string_t*>();
    return text ? *text : dumpJson(value);
}

void addPublicPairs(Pairs& pairs, const Json& publicData) {
    if (!publicData.is_object()) return;
    for (const auto& [key, value] : publicData.items()) {
        removeKey(pairs, key);
        if (!value.is_null()) pairs[key] = toBytes(description(value));
    }
}

}  // namespace

std::map<std::string, Bytes> SupportButton::createTXTDictionary() const {
    Pairs pairs;
    const auto add = [&pairs](const char* key, const std::optional<std::string>& text) {
        if (text && !text->empty()) pairs[key] = toBytes(*text);
    };
    add("manufacturer", "Apple");
    add("device", platform_->device->model());
    if (!support) return pairs;
    add("product_name", support->sdkName);
    add("version", support->supportSDKVersion);
    add("os", support->osVersion);
    add("provider_id", support->providerId());
    add("client_app_identifier", support->clientAppIdentifier());
    return pairs;
}

std::shared_ptr<NetService> SupportButton::makeService(
    std::uint16_t port, std::weak_ptr<NetServiceDelegate> listener) const {
    auto made = platform_->netServices->makeService("local.", "_connect._tcp", "", port);
    if (!made) return nullptr;
    made->setIncludesPeerToPeer(true);
    made->setDelegate(std::move(listener));
    return made;
}

void SupportButton::registermDNSService(std::uint16_t port,
                                        std::weak_ptr<NetServiceDelegate> listener) {
    // The former record goes first, or the device's name would be taken by itself.
    service.reset();
    service = makeService(port, std::move(listener));
    if (!service) return;
    service->setTXTRecordData(dataFromTXTRecordDictionary(createTXTDictionary()));
    service->publish();
}

bool SupportButton::advertiseServiceWithPublicData(const Json& publicData,
                                                   const Json& privateData) {
    auto pairs = createTXTDictionary();
    addPublicPairs(pairs, publicData);
    removeKey(pairs, privateKey);
    if (support && !privateData.is_null()) {
        pairs[privateKey] = toBytes(support->encodeString(description(privateData)));
    }

    registermDNSService(QDmDNSDefaultPort, weak_from_this());
    service.reset();
    service = makeService(QDmDNSDefaultPort, weak_from_this());
    if (!service || !service->setTXTRecordData(dataFromTXTRecordDictionary(pairs))) {
        service.reset();
        platform_->log->write("An error occurred initializing the NSNetService object.");
        return false;
    }
    service->publish();
    return true;
}

void SupportButton::netServiceDidPublish(NetService& published) {
    // The delegate may release the button, and the service with it.
    const auto self = shared_from_this();
    const auto kept = service;
    if (const auto told = delegate.lock()) told->supportButtonDidAdvertiseService(*this, published);
}

void SupportButton::netServiceDidNotPublish(NetService&, const Json& errors) {
    const auto self = shared_from_this();
    const auto kept = service;
    if (const auto told = delegate.lock()) {
        told->supportButtonDidFailToAdvertiseService(*this, errors);
    }
}

}  // namespace supportsdk
