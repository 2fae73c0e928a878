#include <algorithm>
#include <array>

#include "supportsdk/core/EventManager.h"
#include "supportsdk/core/EventNames.h"
#include "supportsdk/launcher/SupportButton.h"
#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

namespace {

constexpr std::array<std::string_view, 5> menuStyles = {"nomenu", "menu", "button", "iconlist",
                                                        "iconlistexit"};
constexpr int iconList = 3;
constexpr int iconListWithExit = 4;

/// A row of the menu: when it is offered, what it is called, and what it does.
struct Channel {
    bool (*isOffered)(const SupportButton& button);
    std::optional<std::string> (Appearance::*text)() const;
    ImagePtr (Appearance::*icon)() const;
    /// For a theme without a text of its own.
    const char* fallback;
    void (SupportButton::*action)();
};

const Features& featuresOf(const SupportButton& button) {
    return button.support->features;
}

template <bool Features::*isEnabled>
bool offers(const SupportButton& button) {
    return featuresOf(button).*isEnabled;
}

bool offersChat(const SupportButton& button) {
    return featuresOf(button).chatEnabled && button.support->isMemberSet();
}

bool offersWeb(const SupportButton& button) {
    return featuresOf(button).websiteEnabled && featuresOf(button).supportWebsiteURL;
}

bool offersEmail(const SupportButton& button) {
    return featuresOf(button).emailEnabled && featuresOf(button).supportEmailAddress &&
           button.support->platform->urlOpener->canSendMail();
}

bool offersPhone(const SupportButton& button) {
    return featuresOf(button).phoneEnabled && featuresOf(button).supportPhoneNumber &&
           button.support->platform->urlOpener->canOpen("tel://");
}

/// Only once they have arrived; the next tap finds them.
bool offersJourneys(const SupportButton& button) {
    return featuresOf(button).journeysEnabled && !button.support->journeys.empty();
}

bool offersExit(const SupportButton& button) {
    return button.menuStyle == iconListWithExit;
}

const Channel channels[] = {
    {offersChat, &Appearance::chatMenuText, &Appearance::chatMenuIcon, "Chat",
     &SupportButton::actionChat},
    {offers<&Features::callmeEnabled>, &Appearance::callMeMenuText, &Appearance::callMeMenuIcon,
     "Call me", &SupportButton::actionCallMe},
    {offers<&Features::kbEnabled>, &Appearance::knowledgeMenuText, &Appearance::knowledgeMenuIcon,
     "Knowledge base", &SupportButton::actionSearchKnowledge},
    {offersWeb, &Appearance::webMenuText, &Appearance::webMenuIcon, "Website",
     &SupportButton::actionWeb},
    {offersEmail, &Appearance::emailMenuText, &Appearance::emailMenuIcon, "E-mail",
     &SupportButton::actionEmail},
    {offersPhone, &Appearance::phoneMenuText, &Appearance::phoneMenuIcon, "Phone",
     &SupportButton::actionPhone},
    {offers<&Features::formsEnabled>, &Appearance::formsMenuText, &Appearance::formsMenuIcon,
     "Forms", &SupportButton::actionForms},
    {offers<&Features::historyEnabled>, &Appearance::historyMenuText, &Appearance::historyMenuIcon,
     "History", &SupportButton::actionHistory},
    {offersJourneys, &Appearance::journeysMenuText, &Appearance::journeysMenuIcon, "Journeys",
     &SupportButton::actionJourneys},
    {offersExit, &Appearance::exitMenuText, &Appearance::exitMenuIcon, "Exit",
     &SupportButton::actionExit},
};

}  // namespace

void SupportButton::clicked() {
    if (support && support->hasProviderId()) {
        click();
    } else {
        failWithDescription("Authorization failed", "Unable to retrieve provider information.");
    }
}

void SupportButton::click() {
    showMenu();
}

void SupportButton::showMenu() {
    const auto self = shared_from_this();
    removePreviousMenuIfNecessary();
    getMenuStyle();
    createSupportEntries();
    if (supportEntries.empty()) {
        platform_->progress->showInfo(platform_->localizer->localized(
            "You do not have any components enabled so you will see an empty menu."));
    }
    if (menuStyle >= 2) {
        displayMenuView();
    } else {
        displayPopupMenu();
    }
}

void SupportButton::getMenuStyle() {
    const auto style = support ? support->appearance->menuStyle : std::nullopt;
    const auto found = std::find(menuStyles.begin(), menuStyles.end(), style.value_or(""));
    menuStyle = found == menuStyles.end() ? iconList : static_cast<int>(found - menuStyles.begin());
}

void SupportButton::createSupportEntries() {
    supportEntries.clear();
    if (!support) return;
    for (const auto& channel : channels) {
        if (!channel.isOffered(*this)) continue;
        const auto text = (*support->appearance.*channel.text)();
        SupportMenuEntry entry;
        entry.label = text ? *text : platform_->localizer->localized(channel.fallback);
        entry.image = (*support->appearance.*channel.icon)();
        entry.action = [weak = weak_from_this(), action = channel.action] {
            const auto self = weak.lock();
            if (!self) return;
            self->menuSelectionComplete();
            (*self.*action)();
        };
        supportEntries.push_back(std::move(entry));
    }
}

void SupportButton::displayPopupMenu() {
    const auto self = shared_from_this();
    ActionSheet sheet;
    sheet.title = support ? support->appearance->menuHeading() : "Support";
    if (support) sheet.tint = support->appearance->menuTextColor();
    sheet.actions.push_back({platform_->localizer->localized("Cancel"), ActionStyle::cancel,
                             [weak = weak_from_this()](const auto&) {
                                 if (const auto button = weak.lock())
                                     button->menuSelectionComplete();
                             }});
    for (const auto& entry : supportEntries) {
        sheet.actions.push_back(
            {entry.label, ActionStyle::plain, [action = entry.action](const auto&) { action(); }});
    }
    if (const auto told = delegate.lock()) {
        told->supportButtonDisplaySupportMenu(*this, std::move(sheet));
    }
    EventManager::notify(event::menuStarted);
}

void SupportButton::displayMenuView() {
    const auto self = shared_from_this();
    supportMenuView = SupportMenuView::create(support);
    supportMenuView->showLoginPrompt = showLoginPrompt;
    supportMenuView->heading = support ? support->appearance->menuHeading() : "Support";
    supportMenuView->entries = supportEntries;
    supportMenuView->menuStyle = menuStyle;
    if (support) support->isUndecorated = isUndecorated;
    if (const auto told = delegate.lock()) told->supportButtonDisplayView(*this, supportMenuView);
    EventManager::notify(event::menuStarted);
}

void SupportButton::removePreviousMenuIfNecessary() {
    if (const auto previous = std::exchange(supportMenuView, nullptr)) {
        previous->removeFromSuperview();
    }
}

void SupportButton::menuSelectionComplete() {
    EventManager::notify(event::menuEnded);
}

}  // namespace supportsdk
