#include "supportsdk/launcher/SupportMenuView.h"

namespace supportsdk {

void SupportMenuView::removeFromSuperview() {
    if (const auto shown = view.lock()) shown->menuShouldDisappear(*this);
}

void SupportMenuView::select(std::size_t index) {
    if (index >= entries.size()) return;
    // The view may drop the menu, and the entries with it.
    const auto action = entries[index].action;
    removeFromSuperview();
    if (action) action();
}

}  // namespace supportsdk
