#include "supportsdk/chat/QDChatButtonCollectionView.h"

#include <cmath>

#include "supportsdk/chat/QDChatActionButton.h"

namespace supportsdk {

void QDChatButtonCollectionView::reload() {
    if (const auto picture = view.lock()) picture->reloadData();
}

void QDChatButtonCollectionView::contentSizeDidChange(double contentHeight) {
    if (!isObserving_ || !std::isfinite(contentHeight) || contentHeight < 0) return;
    // First of all, because the new height may change the content's size again.
    stopObserving();
    height = contentHeight + bottomMargin;
    if (const auto parent = parentDelegate.lock()) parent->collectionViewDidFinishReloading(*this);
}

std::shared_ptr<QDChatActionButton> QDChatButtonCollectionView::buttonForItem(
    std::size_t item) const {
    return item < buttons.size() ? buttons[item] : nullptr;
}

ChatCellSize QDChatButtonCollectionView::sizeForItem(std::size_t item) const {
    const auto button = buttonForItem(item);
    return button ? button->size : ChatCellSize{};
}

double QDChatButtonCollectionView::cornerRadiusForItem(std::size_t item) const {
    return sizeForItem(item).height / 2;
}

}  // namespace supportsdk
