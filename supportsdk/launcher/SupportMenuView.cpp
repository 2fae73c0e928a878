#include "supportsdk/launcher/SupportMenuView.h"

#include "supportsdk/core/Support.h"

namespace supportsdk {

std::shared_ptr<SupportMenuView> SupportMenuView::create(std::shared_ptr<Support> support) {
    auto menu = std::shared_ptr<SupportMenuView>(new SupportMenuView(std::move(support)));
    if (!menu->support) return menu;
    menu->traits_ = menu->support->platform->traits->observe([weak = std::weak_ptr(menu)] {
        const auto self = weak.lock();
        if (!self) return;
        if (const auto shown = self->view.lock()) shown->menuAppearanceDidChange(*self);
    });
    return menu;
}

SupportMenuView::SupportMenuView(std::shared_ptr<Support> from) : support(std::move(from)) {}

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
