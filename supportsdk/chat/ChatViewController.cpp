#include "supportsdk/chat/ChatViewController.h"

#include "supportsdk/core/Configuration.h"
#include "supportsdk/core/EventManager.h"
#include "supportsdk/core/EventNames.h"

namespace supportsdk {

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
    showBarButtons();
    commEntered = false;
    setChatTitle();
    if (engine().isOffline || !issue) return;
    const auto information = support->extractXmppInformation(issue->xmpp_data);
    if (!information) return;
    setXmppInfo(*information);
    if (!comm_id) comm_id = issue->comm_id;
    if (!comm_id) return;
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
    requests_ = EventManager::addObserver([weak = weak(this)](const Notification& notification) {
        if (const auto self = weak.lock()) self->handleNotifications(notification);
    });
    EventManager::notify(event::chatStarted);
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
    const auto companion = rating.lock();
    if (companion && support->rateableIssueId && !isReadOnly) companion->displayRatingScreen();
}

void ChatViewController::handleIssueRefresh() {
    if (issue) support->refreshIssue(issue->id);
}

}  // namespace supportsdk
