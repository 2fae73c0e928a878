#include "supportsdk/launcher/SupportButton.h"

#include <chrono>

#include "supportsdk/chat/ChatViewController.h"
#include "supportsdk/core/Error.h"
#include "supportsdk/core/EventManager.h"
#include "supportsdk/core/EventNames.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

namespace {

std::optional<Json> unlessNull(const Json& value) {
    return value.is_null() ? std::nullopt : std::optional(value);
}

}  // namespace

std::shared_ptr<SupportButton> SupportButton::create(PlatformPtr platform) {
    auto button = std::shared_ptr<SupportButton>(new SupportButton(std::move(platform)));
    button->setup();
    return button;
}

std::shared_ptr<SupportButton> SupportButton::create(PlatformPtr platform,
                                                     const std::string& fileName,
                                                     const Json& customerInfo) {
    auto button = create(std::move(platform));
    button->loadConfigurationFile(fileName, customerInfo);
    return button;
}

SupportButton::SupportButton(PlatformPtr platform) : platform_(std::move(platform)) {}

SupportButton::~SupportButton() = default;

bool SupportButton::loadConfigurationFile(const std::string& fileName, const Json& information) {
    const auto self = shared_from_this();
    customerInfo = unlessNull(information);
    const auto json = Support::jsonFromFile(*platform_, fileName);
    reset();
    replaceSupport(json.value_or(Json()));
    setup();
    return false;
}

bool SupportButton::loadConfigurationJSON(const std::string& json, const Json& information) {
    customerInfo = unlessNull(information);
    initializeSDKWithJSON(jsonFromData(json));
    return isUtf8(json);
}

bool SupportButton::loadConfigurationJSON(const std::string& json,
                                          const std::string& customerInfoJSON) {
    takeCustomer(customerInfoJSON);
    initializeSDKWithJSON(jsonFromData(json));
    return isUtf8(json);
}

void SupportButton::initializeSDKWithJSON(const std::optional<Json>& json) {
    if (!json || !json->is_object()) return;
    replaceSupport(*json);
    if (auto image = support->getButtonImage()) setIcon(std::move(image));
}

void SupportButton::replaceSupport(const Json& json) {
    // An open screen may keep the former one alive; what that still learns is no news of this
    // button.
    if (support) support->retire();
    support = Support::create(json, weak_from_this(), platform_);
}

std::optional<Json> SupportButton::jsonFromData(const std::string& data) {
    return parseJson(data);
}

std::optional<std::string> SupportButton::configureWithJSON(const std::string& json) {
    if (!support) return std::nullopt;
    return support->appearance->configureWithJSON(json);
}

void SupportButton::reset() {
    isSettingsRetrieved = false;
    if (support) support->isCloudConfigComplete = false;
}

/// Loading from a file runs it once more, so requests from outside then arrive twice.
void SupportButton::setup() {
    platform_->progress->setMinimumDisplayTime(std::chrono::seconds{5});
    observations_.push_back(
        EventManager::addObserver([weak = weak_from_this()](const Notification& notification) {
            if (const auto self = weak.lock()) self->handleNotifications(notification);
        }));
    platform_->progress->setDarkStyle(support && support->appearance->darkMode());
    if (support) support->appearance->configureNavigationBar();
    if (const auto data = platform_->kitBundle->data("support-sdk-icon", "png")) {
        setIcon(platform_->images->decode(*data));
    }
    showBadge(false, {});
    observations_.push_back(NotificationCenter::shared().addObserver(
        notification::chatUnreadCountUpdated,
        [weak = weak_from_this()](const Notification& notification) {
            if (const auto self = weak.lock()) self->chatUnreadCountUpdated(notification);
        }));
}

void SupportButton::setIcon(ImagePtr icon) {
    icon_ = std::move(icon);
    // A copy: the view may release the button.
    if (const auto shown = view.lock()) shown->iconDidChange(ImagePtr(icon_));
}

void SupportButton::handleNotifications(const Notification& notification) {
    if (notification.object == request::exit) actionExit();
}

/// A count of 0 leaves the badge: it goes when the user turns to the kit.
void SupportButton::chatUnreadCountUpdated(const Notification& notification) {
    const auto count = notification.object.number().value_or(0);
    if (count != 0) showBadge(true, std::to_string(count));
}

void SupportButton::willMoveToSuperview() {
    hideBadge();
}

void SupportButton::showBadge(bool visible, const std::string& text) {
    if (visible == isBadgeVisible_ && text == badgeText_) return;
    isBadgeVisible_ = visible;
    badgeText_ = text;
    // A copy: the view may release the button, whose own text this may be.
    if (const auto shown = view.lock()) shown->badgeDidChange(visible, std::string(text));
}

void SupportButton::hideBadge() {
    showBadge(false, badgeText_);
}

void SupportButton::supportDidRetrieveSettings(const Json&) {
    // A delegate may release the button, or load another configuration.
    const auto self = shared_from_this();
    const auto source = support;
    if (!source) return;
    isSettingsRetrieved = true;
    createSupportEntries();
    const auto& features = source->features;
    const bool awaitsJourneys = features.journeysEnabled;
    if (awaitsJourneys) {
        source->getJourneysWithCompletion([weak = weak_from_this(), asked = std::weak_ptr(source)] {
            const auto button = weak.lock();
            if (button && button->support == asked.lock()) button->tellSettingsAreIn();
        });
    }
    source->isSideBySideForms = isSideBySideForms;
    if (features.kbEnabled) source->getKB({});
    if (features.formsEnabled) source->getSupportForms();
    if (features.historyEnabled) source->getHistory();
    if (customerInfo) getCustomerWithInformation(*customerInfo);
    getMenuStyle();
    EventManager::notify(event::sdkStarted);
    if (!awaitsJourneys && support == source) tellSettingsAreIn();
}

void SupportButton::tellSettingsAreIn() {
    if (const auto told = delegate.lock()) told->supportButtonDidGetSettings(*this);
}

void SupportButton::supportDidFailToRetrieveSettings(const Json& response) {
    const auto self = shared_from_this();
    if (const auto told = delegate.lock()) {
        told->supportButtonDidFailToGetSettingsWithError(
            *this, makeError("Unable to retrieve settings", stringForKey(response, "message")));
    }
}

RestCallback SupportButton::unlessReloaded(AnswerHandler handler) {
    return
        [weak = weak_from_this(), asked = std::weak_ptr(support), handler](const Json& response) {
            const auto self = weak.lock();
            if (!self || !self->support || self->support != asked.lock()) return;
            (*self.*handler)(response);
        };
}

RestCallback SupportButton::afterDismissal(AnswerHandler handler) {
    return [progress = platform_->progress, next = unlessReloaded(handler)](const Json& response) {
        progress->dismiss();
        next(response);
    };
}

SupportError SupportButton::makeError(const std::string& description,
                                      const std::optional<std::string>& reason) const {
    const auto& localizer = *platform_->localizer;
    SupportError error;
    error.localizedDescription = localizer.localized(description);
    if (reason) error.localizedFailureReason = localizer.localized(*reason);
    return error;
}

void SupportButton::failWithDescription(const std::string& description,
                                        const std::optional<std::string>& reason) {
    const auto self = shared_from_this();
    if (const auto told = delegate.lock()) {
        told->supportButtonDidFailWithError(*this, makeError(description, reason));
    }
}

}  // namespace supportsdk
