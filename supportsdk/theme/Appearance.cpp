#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

Appearance::Appearance(PlatformPtr platform) : platform_(std::move(platform)) {}

void Appearance::configure() {
    if (isConfigured) return;
    configuration_ = menuConfiguration_ = menuAppearance_ = formAppearance_ =
        navigationBarAppearance_ = ThemeStore();
    configureDefaultColors();
    badgeBackgroundColor = colorFromRGB(0xFF0000);
    homeBackgroundColor = colorFromRGB(0x1F3350);
    linkAndButtonTintColor = colorFromRGB(0xACACAC);
    platform_->progress->setDarkStyle(darkMode());
    setDefaultAppearance();
    configureNavigationBar();
    traitsObservation_ = platform_->traits->observe([this] { handleTraits(); });
    isConfigured = true;
}

void Appearance::setDefaultAppearance() {
    if (const auto theme = getJSONFromFile("default_appearance")) configureWithJSON(*theme);
}

void Appearance::configureDefaultColors() {
    const auto systemColor = [this](const char* name, std::uint32_t fallback) {
        return platform_->traits->systemColor(name).value_or(colorFromRGB(fallback));
    };
    labelColor = systemColor("labelColor", 0x000000);
    systemBackgroundColor = systemColor("systemBackgroundColor", 0xFFFFFF);
    // No system has a colour of this odd name. It stays, because themes are drawn for light gray.
    secondarySystemBackgroundColor =
        systemColor("secondarySystemBackgroundColorSelector", 0xAAAAAA);
}

void Appearance::configureNavigationBar() {
    auto& global = *platform_->globalAppearance;
    global.setNavigationBarTranslucent(false);
    global.setNavigationBarTintColor(navigationBarTextColor());
    global.setNavigationBarBarTintColor(navigationBarBackgroundColor());
}

void Appearance::handleTraits() {
    configureDefaultColors();
    configureNavigationBar();
    // Some systems say only later which look they want.
    platform_->progress->setDarkStyle(darkMode());
    platform_->globalAppearance->setControlTintColor(navigationBarIconColor());
}

bool Appearance::darkMode() const {
    return platform_->traits->darkMode();
}

Color Appearance::getColor(std::uint32_t rgb) const {
    return colorFromRGB(darkMode() ? 0xFFFFFF - (rgb & 0xFFFFFF) : rgb);
}

void Appearance::setChatImageReceiver(std::weak_ptr<ChatImageReceiver> receiver) {
    chatImageReceiver_ = std::move(receiver);
    giveImagesToChat();
}

void Appearance::giveImagesToChat() const {
    const auto chat = chatImageReceiver_.lock();
    if (!chat) return;
    if (auto image = chatAttachmentButtonImage())
        chat->setChatAttachmentButtonImage(std::move(image));
    if (auto image = chatSendButtonImage()) chat->setChatSendButtonImage(std::move(image));
}

}  // namespace supportsdk
