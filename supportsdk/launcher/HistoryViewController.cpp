#include "supportsdk/launcher/HistoryViewController.h"

#include <utility>

#include "supportsdk/chat/ChatViewController.h"
#include "supportsdk/core/EventManager.h"
#include "supportsdk/core/EventNames.h"
#include "supportsdk/launcher/HistoryAvatars.h"
#include "supportsdk/launcher/RatingAfterChat.h"
#include "supportsdk/launcher/RatingViewController.h"
#include "supportsdk/launcher/SupportButton.h"

namespace supportsdk {

std::shared_ptr<HistoryViewController> HistoryViewController::create(
    std::shared_ptr<Support> support, std::weak_ptr<SupportButton> button) {
    return std::shared_ptr<HistoryViewController>(
        new HistoryViewController(std::move(support), std::move(button)));
}

HistoryViewController::HistoryViewController(std::shared_ptr<Support> owner,
                                             std::weak_ptr<SupportButton> button)
    : support(std::move(owner)),
      supportButton(std::move(button)),
      avatars_(std::make_unique<HistoryAvatars>(support, [this] { reloadTable(); })) {}

HistoryViewController::~HistoryViewController() = default;

void HistoryViewController::viewDidLoad() {
    title = localized("History");
    loadActionSettings();
    showBarButtons();
    support->historyDelegate = self();
    if (support->historyViewModel) {
        supportUpdateHistory(support->historyViewModel);
    } else {
        support->getHistory();
    }
}

void HistoryViewController::showBarButtons() {
    const std::weak_ptr<HistoryViewController> weak = self();
    leftBarButtons = {{localized("Back"), [weak] {
                           if (const auto screen = weak.lock()) screen->back();
                       }}};
    rightBarButtons = {{"...", [weak] {
                            const auto screen = weak.lock();
                            if (screen && !screen->rightBarButtons.empty())
                                screen->showActionMenu(&screen->rightBarButtons.front());
                        }}};
}

void HistoryViewController::viewWillAppear() {
    isNavigationBarHidden = false;
    reloadTable();
    if (support->isHistoryRequested) {
        isRetrievingShown_ = true;
        support->platform->progress->showStatus(localized("Retrieving"));
    }
    EventManager::notify(event::historyStarted);
}

void HistoryViewController::viewWillDisappear() {
    dismissRetrieving();
    avatars_->stop();
    EventManager::notify(event::historyEnded);
}

/// The answer leaves the text where it is, but no other screen shall wear it.
void HistoryViewController::dismissRetrieving() {
    if (std::exchange(isRetrievingShown_, false)) support->platform->progress->dismiss();
}

void HistoryViewController::supportUpdateHistory(const std::shared_ptr<HistoryViewModel>& model) {
    if (!model) return;
    model->sort();
    model->delegate = self();
    shown_ = model;
    reloadTable();
}

std::size_t HistoryViewController::numberOfRows() const {
    return shown_ ? shown_->numberOfRows() : 0;
}

HistoryRow HistoryViewController::row(std::size_t index) const {
    if (index >= numberOfRows()) return {};
    auto row = historyRow(*shown_->sortedEntries[index], *support->platform);
    row.avatarImage = avatars_->pictureAt(row.avatar);
    row.isAvatarLoaded = avatars_->hasPictureAt(row.avatar);
    return row;
}

void HistoryViewController::didSelectRow(std::size_t index) {
    if (const auto model = shown_) model->didSelectRow(index);
}

void HistoryViewController::viewModelDidSelectEntry(HistoryViewModel& /*model*/,
                                                    const std::shared_ptr<QDIssue>& issue) {
    // Before the screen that opens shows a text of its own.
    dismissRetrieving();
    if (issue->isResolved() && !issue->isRated) {
        displayRatingWithIssue(issue);
    } else {
        displayChatWithIssue(issue);
    }
}

void HistoryViewController::displayChatWithIssue(const std::shared_ptr<QDIssue>& issue) {
    const bool hasTranscripts = issue->transcripts && !issue->transcripts->empty();
    if (!hasTranscripts || !(issue->xmpp_data || issue->comm_id)) {
        support->platform->progress->showError(localized("This issue has no chat history."));
        return;
    }
    const auto chat = ChatViewController::create(support, issue);
    chat->isVideoUnavailable = SupportButton::isVideoUnavailable();
    chat->isReadOnly = !issue->isOpen();
    chat->chatRoomTitle = chat->isReadOnly ? localized("Site History") : "";
    chat->rating = ratingAfterChat(support, supportButton);
    support->platform->presenter->push(chat, *this);
}

void HistoryViewController::displayRatingWithIssue(const std::shared_ptr<QDIssue>& issue) {
    support->rateableIssueId = issue->id;
    RatingViewController::create(support, supportButton)->showFromViewController(*this);
}

void HistoryViewController::back() {
    const auto& presenter = support->platform->presenter;
    if (presentingController.expired()) {
        presenter->pop(*this);
    } else {
        presenter->dismiss(*this);
    }
}

void HistoryViewController::reloadTable() {
    if (const auto picture = view.lock()) picture->reloadTable();
}

std::string HistoryViewController::localized(const char* english) const {
    return support->platform->localizer->localized(english);
}

std::shared_ptr<HistoryViewController> HistoryViewController::self() {
    return std::static_pointer_cast<HistoryViewController>(shared_from_this());
}

}  // namespace supportsdk
