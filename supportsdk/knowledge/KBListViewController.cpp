#include "supportsdk/knowledge/KBListViewController.h"

#include <utility>

#include "supportsdk/core/EventManager.h"
#include "supportsdk/core/EventNames.h"
#include "supportsdk/knowledge/KBArticle.h"
#include "supportsdk/knowledge/KBSearchViewController.h"

namespace supportsdk {

std::shared_ptr<KBListViewController> KBListViewController::create(
    std::shared_ptr<Support> support, std::weak_ptr<SupportButton> button) {
    return std::shared_ptr<KBListViewController>(
        new KBListViewController(std::move(support), std::move(button)));
}

KBListViewController::KBListViewController(std::shared_ptr<Support> owner,
                                           std::weak_ptr<SupportButton> button)
    : support(std::move(owner)), supportButton(std::move(button)) {}

void KBListViewController::viewDidLoad() {
    rightBarButtons = {
        {support->platform->localizer->localized("Search"), [weak = std::weak_ptr(self())] {
             if (const auto screen = weak.lock()) screen->search();
         }}};
    if (support->kbViewModel) {
        supportUpdateKBWithModel(support->kbViewModel);
    } else {
        support->getKB(self());
    }
}

void KBListViewController::viewWillAppear() {
    isNavigationBarHidden = false;
    // A screen on top of this one has taken the model over, and may have folded folders.
    if (kbViewModel && kbViewModel->delegate.lock().get() != this) {
        kbViewModel->delegate = self();
        reloadTable();
    }
    if (support->isKBRequested) {
        isRetrievingShown_ = true;
        support->platform->progress->showStatus(
            support->platform->localizer->localized("Retrieving"));
    }
    EventManager::notify(event::knowledgeStarted);
}

void KBListViewController::viewDidAppear() {
    if (kbViewModel) dismissProgress();
}

void KBListViewController::viewWillDisappear() {
    dismissProgress();
    EventManager::notify(event::knowledgeEnded);
}

void KBListViewController::supportUpdateKBWithModel(const std::shared_ptr<KBViewModel>& model) {
    if (model) {
        kbViewModel = model;
        kbViewModel->delegate = self();
        reloadTable();
    }
    dismissProgress();
}

void KBListViewController::viewModelDidExpandFolder(KBViewModel& /*model*/,
                                                    const std::shared_ptr<KBEntryModel>&) {
    reloadTable();
}

void KBListViewController::viewModelDidSelectFolder(KBViewModel& /*model*/,
                                                    const std::shared_ptr<KBEntryModel>& folder) {
    const auto list = create(support, supportButton);
    list->kbViewModel = KBViewModel::createWithFolder(folder);
    support->platform->presenter->push(list, *this);
}

void KBListViewController::viewModelDidSelectEntry(KBViewModel& /*model*/,
                                                   const std::shared_ptr<KBEntryModel>& entry) {
    if (entry->url && !entry->url->empty()) {
        presentArticle(*support, *entry, *this);
    } else {
        pushArticle(*support, *entry, *this);
    }
}

void KBListViewController::search() {
    support->platform->presenter->push(KBSearchViewController::create(support, supportButton),
                                       *this);
}

void KBListViewController::reloadTable() {
    if (const auto picture = view.lock()) picture->reloadTable();
}

/// The text stays until the rows are there to be seen, or the screen is left.
void KBListViewController::dismissProgress() {
    if (std::exchange(isRetrievingShown_, false)) support->platform->progress->dismiss();
}

std::shared_ptr<KBListViewController> KBListViewController::self() {
    return std::static_pointer_cast<KBListViewController>(shared_from_this());
}

}  // namespace supportsdk
