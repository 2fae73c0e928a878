#include <algorithm>

#include "supportsdk/core/Error.h"
#include "supportsdk/core/EventManager.h"
#include "supportsdk/core/EventNames.h"
#include "supportsdk/core/SettingsViewController.h"
#include "supportsdk/launcher/SupportButton.h"

namespace supportsdk {

void SupportButton::actionChat() {
    const auto self = shared_from_this();
    hideBadge();
    if (!support) return;
    if (support->features.supportUnavailable) {
        failWithDescription("Support unavailable", support->features.supportUnavailableSummary);
    } else {
        getOrCreateIssue();
    }
}

void SupportButton::actionWeb() {
    const auto self = shared_from_this();
    hideBadge();
    if (!support) return;
    openAddress(support->features.supportWebsiteURL.value_or(""), "Unable to open webpage",
                "Device may not have internet access or browser.");
}

void SupportButton::actionEmail() {
    const auto self = shared_from_this();
    hideBadge();
    if (!support) return;
    openAddress("mailto:" + support->features.supportEmailAddress.value_or(""),
                "Unable to send email", "Email may not be configured on device.");
}

void SupportButton::actionPhone() {
    const auto self = shared_from_this();
    hideBadge();
    if (!support) return;
    auto number = support->features.supportPhoneNumber.value_or("");
    std::erase(number, ' ');
    openAddress("tel://" + number, "Unable to place phone call", "Phone number is incorrect.");
}

void SupportButton::actionExit() {
    const auto self = shared_from_this();
    EventManager::notify(event::sdkEnded);
    if (const auto told = delegate.lock()) told->supportButtonDidRequestExit(*this);
}

void SupportButton::actionSettings() {
    if (support) displayScreen(std::make_shared<SettingsViewController>(support));
}

bool SupportButton::deviceCanMakePhoneCalls() const {
    return platform_->urlOpener->canOpen("tel:+44-1234-567890");
}

void SupportButton::sendRequest(const std::string& request) {
    EventManager::notify(request);
}

void SupportButton::openAddress(const std::string& address, const char* description,
                                const char* reason) {
    platform_->urlOpener->open(address, [weak = weak_from_this(), asked = std::weak_ptr(support),
                                         description, reason](bool worked) {
        const auto self = weak.lock();
        if (worked || !self || self->support != asked.lock()) return;
        self->failWithDescription(description, reason);
    });
}

void SupportButton::displayScreen(std::shared_ptr<ScreenController> screen) {
    const auto self = shared_from_this();
    if (const auto told = delegate.lock()) {
        told->supportButtonDisplayViewController(*this, std::move(screen));
    }
}

}  // namespace supportsdk
