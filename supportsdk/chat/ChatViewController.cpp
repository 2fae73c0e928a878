#include "supportsdk/chat/ChatViewController.h"

#include "supportsdk/chat/QDChatActionButton.h"
#include "supportsdk/chat/QDChatButtonCollectionView.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/core/BaseWebViewController.h"
#include "supportsdk/core/Configuration.h"
#include "supportsdk/core/EventManager.h"
#include "supportsdk/core/EventNames.h"
#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

namespace {
/// A room may tell thousands of lines at once, each of which asks for the issue.
constexpr std::chrono::seconds refreshPause{1};
}  // namespace

std::shared_ptr<ChatViewController> ChatViewController::create(std::shared_ptr<Support> support,
                                                               std::shared_ptr<QDIssue> issue) {
    return std::shared_ptr<ChatViewController>(
        new ChatViewController(std::move(support), std::move(issue)));
}

ChatViewController::ChatViewController(std::shared_ptr<Support> owner,
                                       std::shared_ptr<QDIssue> subject)
    : QDChatViewController(owner->chat), support(std::move(owner)), issue(std::move(subject)) {}

void ChatViewController::viewDidLoad() {
    QDChatViewController::viewDidLoad();
    engine().maintainConnection = true;
    engine().showNotifications = true;
    if (support->config)
        engine().avatarRetrievalAPIBaseURL = support->config->deployment.productionHost;
    engine().ignoreParticipantStatus = false;
    kbViewController = std::make_shared<BaseWebViewController>(
        platform(), localized("Knowledge Base"), localized("Done"), "");
    kbViewController->isPushed = true;
    showBarButtons();
    commEntered = false;
    setChatTitle();
    // Without one the screen is empty, also beside a chat that goes on.
    if (!findConversation())
        return engine().openTranscripts(issue ? issue->comm_id.value_or("") : "");
    if (!isBesideRoom()) engine().commId = comm_id;
    setupChat();
    if (isReadOnly) {
        engine().openTranscripts(*comm_id);
        getTranscripts(*comm_id);
    } else {
        engine().openConversation(*comm_id);
        chatGet(*comm_id);
    }
}

bool ChatViewController::findConversation() {
    if (engine().isOffline || !issue) return false;
    const auto information = support->extractXmppInformation(issue->xmpp_data);
    if (!information) return false;
    setXmppInfo(*information);
    if (!comm_id) comm_id = issue->comm_id;
    return comm_id.has_value();
}

void ChatViewController::showBarButtons() {
    const auto self = weak(this);
    leftBarButtons = {{localized("Back"), [self] {
                           if (const auto screen = self.lock()) screen->backButtonPressed();
                       }}};
    if (isReadOnly) return;
    rightBarButtons = {{localized("End Chat"), [self] {
                            if (const auto screen = self.lock()) screen->cancel();
                        }}};
}

void ChatViewController::viewWillAppear() {
    QDChatViewController::viewWillAppear();
    showing = true;
    isHandingOver_ = false;
    configureAppearance();
    requests_ = EventManager::addObserver([weak = weak(this)](const Notification& notification) {
        if (const auto self = weak.lock()) self->handleNotifications(notification);
    });
    EventManager::notify(event::chatStarted);
}

void ChatViewController::configureAppearance() {
    const auto& theme = *support->appearance;
    auto& look = engine().appearance;
    // A theme without a colour leaves the system's: no black on black in a dark look.
    look.timeStampColor = theme.chatTimeStampColor().value_or(theme.labelColor);
    look.labelColor = theme.textColor().value_or(theme.labelColor);
    look.linkAndButtonTintColor = theme.linkAndButtonTintColor;
    look.backgroundColor = theme.systemBackgroundColor;
    look.chatActionButtonBackgroundColor = theme.systemBackgroundColor;
    look.entryViewButtonColor = theme.chatSendButtonEnabledColor();
    look.entryViewButtonDisabledColor =
        theme.chatSendButtonDisabledColor().value_or(ChatAppearance{}.entryViewButtonDisabledColor);
    look.chatActionButtonTextColor = theme.chatActionButtonTextColor();
    look.chatActionButtonBorderColor = theme.chatActionButtonBorderColor();
    look.chatActionButtonSelectedTextColor = colorFromRGB(0xFFFFFF);
    look.chatNavigationBarBackgroundColor =
        theme.chatNavBarColor().value_or(ChatAppearance{}.chatNavigationBarBackgroundColor);
    engine().hideTextEntryAccessoryView = true;
    repaintButtons();
}

/// Those of the newest line, which can be pressed, have their colours from when they were made.
void ChatViewController::repaintButtons() const {
    const auto newest = lastMessage();
    if (!newest || !newest->chatButtonCollectionView) return;
    for (const auto& button : newest->chatActionButtons) button->updateButtonLook();
    newest->chatButtonCollectionView->reload();
}

void ChatViewController::viewWillDisappear() {
    QDChatViewController::viewWillDisappear();
    showing = false;
    if (commEntered && comm_id) chatExit(*comm_id);
    dismissProgress();
    requests_.reset();
    EventManager::notify(event::chatEnded);
}

void ChatViewController::viewDidDisappear() {
    QDChatViewController::viewDidDisappear();
    if (issue) engine().postUnreadMessageCount = true;
    // The person comes back from what was opened here, and is not asked over it.
    if (std::exchange(isHandingOver_, false)) return;
    if (rating && support->rateableIssueId && !isReadOnly) rating->displayRatingScreen();
}

void ChatViewController::handOver(const std::function<void()>& show) {
    const auto self = shared_from_this();
    isHandingOver_ = true;
    show();
    // Who shows the page beside the chat takes nothing away.
    if (showing) isHandingOver_ = false;
}

void ChatViewController::handleIssueRefresh() {
    if (refreshTimer_) {
        refreshAgain_ = true;
        return;
    }
    if (!issue) return;
    support->refreshIssue(issue->id);
    refreshTimer_ = platform().mainQueue->after(refreshPause, [weak = weak(this)] {
        const auto self = weak.lock();
        if (!self) return;
        self->refreshTimer_.reset();
        if (std::exchange(self->refreshAgain_, false)) self->handleIssueRefresh();
    });
}

}  // namespace supportsdk
