#include "supportsdk/chat/QDChatCollectionView.h"

#include <utility>

#include "supportsdk/chat/QDChatViewModel.h"
#include "supportsdk/chat/QuorrandChat.h"

namespace supportsdk {

QDChatCollectionView::QDChatCollectionView(std::weak_ptr<QuorrandChat> engine)
    : engine_(std::move(engine)) {}

void QDChatCollectionView::setup() {
    const auto engine = engine_.lock();
    if (!engine) return;
    engine->typingType = 0;
    engine->viewModel->setupCollectionView(*this);
}

void QDChatCollectionView::reloadCollectionView() {
    cellCount = 0;
    isObserving_ = true;
    if (const auto picture = view.lock()) picture->reloadData();
}

void QDChatCollectionView::contentDidChange() {
    // Ended first: scrolling may change the content's size again.
    if (!std::exchange(isObserving_, false)) return;
    const auto picture = view.lock();
    const auto lines = dataSource.lock();
    if (!picture || !lines || lines->messageGroups().empty()) return;
    const auto section = lines->messageGroups().size() - 1;
    picture->scrollToItem({section, lines->messageGroups()[section].size()}, true);
}

}  // namespace supportsdk
