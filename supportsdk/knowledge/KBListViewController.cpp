#include "supportsdk/knowledge/KBListViewController.h"

#include <utility>

#include "supportsdk/core/EventManager.h"
#include "supportsdk/core/EventNames.h"
#include "supportsdk/knowledge/KBViewController.h"
#include "supportsdk/theme/Appearance.h"

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
    if (support->kbViewModel) {
        supportUpdateKBWithModel(support->kbViewModel);
    } else {
        support->getKB(self());
    }
}

void KBListViewController::viewWillAppear() {
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
    const auto& platform = *support->platform;
    const auto heading = entry->title.value_or("");
    if (entry->url && !entry->url->empty()) {
        const auto browser = std::make_shared<KBViewController>(
            platform, heading, platform.localizer->localized("Done"), *entry->url);
        browser->barTintColor = support->appearance->linkAndButtonTintColor;
        const auto navigation = std::make_shared<NavigationController>();
        navigation->children.push_back(browser);
        platform.presenter->present(navigation, this);
        return;
    }
    const auto article = std::make_shared<BaseWebViewController>(
        platform, heading, platform.localizer->localized("Back"), "");
    article->html = entry->body.value_or("");
    article->isPushed = true;
    article->barColor = support->appearance->systemBackgroundColor;
    article->barTintColor = support->appearance->linkAndButtonTintColor;
    platform.presenter->push(article, *this);
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
