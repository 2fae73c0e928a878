#include "supportsdk/chat/QDChatViewController.h"

#include "supportsdk/chat/QDChatCollectionView.h"
#include "supportsdk/chat/QDChatViewModel.h"

namespace supportsdk {

namespace {

/// Long enough for a burst of lines to arrive, too short to notice.
constexpr std::chrono::milliseconds reloadDelay{10};
/// For a room that never pauses that long.
constexpr std::chrono::milliseconds longestReloadDelay{250};
constexpr std::chrono::seconds refreshDuration{1};

}  // namespace

QDChatViewController::QDChatViewController(std::shared_ptr<QuorrandChat> engine)
    : engine_(std::move(engine)) {}

void QDChatViewController::viewDidLoad() {
    engine_->delegate = weak<QDChatViewController>(this);
    collectionView = std::make_shared<QDChatCollectionView>(engine_);
    collectionView->setup();
    engine_->collectionView = collectionView;
    if (isReadOnly) return;
    entryView = QDChatMessageEntryView::messageEntryViewWithFrame(engine_);
    entryView->delegate = weak<QDChatViewController>(this);
}

void QDChatViewController::viewWillAppear() {
    hasLeftView_ = false;
    if (!engine_->isActionRequested) clear();
    engine_->isActionRequested = false;
}

void QDChatViewController::viewDidAppear() {
    engine_->postUnreadMessageCount = false;
    engine_->unreadMessageCount = 0;
    if (const auto picture = view.lock()) picture->enableKeyboardManager(true);
}

void QDChatViewController::viewWillDisappear() {
    hasLeftView_ = true;
    if (const auto picture = view.lock()) picture->endEditing();
}

void QDChatViewController::viewDidDisappear() {
    if (const auto picture = view.lock()) picture->enableKeyboardManager(false);
}

void QDChatViewController::connect() {
    resetMentionSuggestions();
    showOpeningStatus("Connecting to chat server");
    if (ownsConversation() && !isBesideRoom()) {
        engine_->timeout = timeoutChatConnect;
        engine_->muc = muc;
        engine_->nickname = nickname;
        engine_->me = senderId;
    }
    reloadData();
    engine_->connect();
}

bool QDChatViewController::isBesideRoom() const {
    return isReadOnly && engine_->hasRoom();
}

void QDChatViewController::disconnect() {
    engine_->disconnect();
}

void QDChatViewController::exitChat() {
    engine_->leaveRoom();
}

void QDChatViewController::resetChat() {
    stopReloadTimer();
    reloadData();
}

void QDChatViewController::refreshLists() {
    // The engine may be in the room of another chat, or have been in one.
    if (!isReadOnly) engine_->requestRoomHistory();
    refreshTimer_ = platform().mainQueue->after(refreshDuration, [weak = weak(this)] {
        const auto self = weak.lock();
        const auto picture = self ? self->view.lock() : nullptr;
        if (picture) picture->stopRefresh();
    });
}

void QDChatViewController::reloadData() {
    if (collectionView) {
        // Opening a conversation gives the engine another list.
        if (collectionView->dataSource.lock() != engine_->viewModel)
            engine_->viewModel->setupCollectionView(*collectionView);
        collectionView->reloadCollectionView();
    }
    if (const auto picture = view.lock()) picture->reloadData();
}

void QDChatViewController::startReloadTimer() {
    if (!isReadOnly && !engine_->isRoomJoined()) return stopReloadTimer();
    const auto reload = [weak = weak(this)] {
        if (const auto self = weak.lock()) self->resetChat();
    };
    reloadTimer_ = platform().mainQueue->after(reloadDelay, reload);
    if (!reloadDeadline_) reloadDeadline_ = platform().mainQueue->after(longestReloadDelay, reload);
}

void QDChatViewController::stopReloadTimer() {
    reloadTimer_.reset();
    reloadDeadline_.reset();
}

void QDChatViewController::addMessage(const std::shared_ptr<QuorrandChatMessage>& message) {
    engine_->viewModel->addMessage(message);
}

std::shared_ptr<QuorrandChatMessage> QDChatViewController::lastMessage() const {
    return engine_->viewModel->lastMessage();
}

void QDChatViewController::addTypingMessage() {
    engine_->typingType = 2;
    engine_->addTypingMessage();
}

std::string QDChatViewController::localized(const std::string& english) const {
    return platform().localizer->localized(english);
}

std::string QDChatViewController::hostName() const {
    return platform().mainBundle->info("CFBundleDisplayName").value_or("");
}

void QDChatViewController::showStatus(const std::string& english) const {
    platform().progress->showStatus(localized(english));
}

void QDChatViewController::showOwnStatus(const std::string& english) const {
    if (!hasLeftView_) showStatus(english);
}

void QDChatViewController::showOpeningStatus(const std::string& english) const {
    if (!silent) showOwnStatus(english);
}

void QDChatViewController::dismissOwnProgress() const {
    if (!hasLeftView_) dismissProgress();
}

void QDChatViewController::warn(const std::string& message) {
    platform().presenter->showAlert({hostName(), message, {}, {{localized("OK"), {}, {}}}});
}

void QDChatViewController::alertWithTitle(const std::string& alertTitle,
                                          const std::string& message) {
    alertWithTitle(platform(), alertTitle, message);
}

void QDChatViewController::alertWithTitle(const Platform& platform, const std::string& alertTitle,
                                          const std::string& message) {
    const auto& words = *platform.localizer;
    platform.presenter->showAlert({words.localized(alertTitle),
                                   words.localized(message),
                                   {},
                                   {{words.localized("OK"), {}, {}}}});
}

}  // namespace supportsdk
